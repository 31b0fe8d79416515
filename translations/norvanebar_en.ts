<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AccountSettingsView</name>
    <message>
        <source>Norvane Accounts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Personal API tokens are stored in the system keyring, one per account. Switch anytime from here or from the account menu in the popover.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Active</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Another Account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Norvane Account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Find your token in Norvane under Settings → Apps → API Token. You can add as many accounts as you like — for example a personal and a company account.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Personal API token</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get your token…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AccountSwitcherMenu</name>
    <message>
        <source>Switch Norvane account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signed in as %1 — click to switch account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Account…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>NorvaneBar: this desktop shows no tray icons (no StatusNotifierItem host or XEmbed tray is running).
NorvaneBar keeps running: launch it again, or call TogglePopover on com.norvanebar.NorvaneBar over D-Bus, to open it.
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentSaveDialogs</name>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t save file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentSizeLimits</name>
    <message>
        <source>The file is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This file is %1, which exceeds Norvane&apos;s %2 attachment limit. Try a shorter recording or lower quality.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This file is %1. Norvane allows up to 1 GB per attachment.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentStorageSettings</name>
    <message>
        <source>Select an external storage provider first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> configuration looks valid.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connected to Google Drive.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentStorageSettingsView</name>
    <message>
        <source>Store attachments with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attachments upload directly to Norvane when you create a task.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>External providers upload files before task creation and insert viewable links into the task description. Norvane stores files as native attachments.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudinary</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloud name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Upload preset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create an unsigned upload preset in Cloudinary Dashboard → Settings → Upload. Only the cloud name and preset are stored locally.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudinary upload presets</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudflare R2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Account ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bucket name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Public URL base</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>https://files.example.com</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use a public bucket or custom domain that serves uploaded objects over HTTPS.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudflare R2 docs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R2 credentials</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access keys are stored in the system keyring, not in settings.json.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access key ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Secret access key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Google Drive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uploads go to files your app creates and are shared as “anyone with the link.” Optionally paste a Drive folder ID to upload into a specific folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder ID (optional)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drive root</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sign in with Google</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finish signing in with Google in your browser.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel Google sign-in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Test connection</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentStorageViewModel</name>
    <message>
        <source>Norvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentStripView</name>
    <message numerus="yes">
        <source>%n attachments</source>
        <translation>
            <numerusform>%n attachment</numerusform>
            <numerusform>%n attachments</numerusform>
        </translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentThumbnail</name>
    <message>
        <source>Remove %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save to Disk…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentUploadError</name>
    <message>
        <source>Attachment file not found on disk.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AttachmentUploader</name>
    <message>
        <source>Attachment exceeds Norvane&apos;s size limit (%1).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AutostartEntry</name>
    <message>
        <source>Could not remove %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not create the folder %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not write %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BackgroundJobResultBanner</name>
    <message>
        <source>Retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BackgroundSubmitQueue</name>
    <message numerus="yes">
        <source>%n attachments failed. </source>
        <translation>
            <numerusform>%n attachment failed. </numerusform>
            <numerusform>%n attachments failed. </numerusform>
        </translation>
    </message>
</context>
<context>
    <name>BookmarkSettingsSection</name>
    <message>
        <source>Quick Links</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quick links appear in the tray icon&apos;s right-click menu and open in your browser.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No quick links yet. Star a list in the location picker, or add any Norvane URL below.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sprint board</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quick link name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quick link address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Quick Link</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BulkDoneView</name>
    <message>
        <source>Copy link for %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Retry failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy All Links</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy all task links</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BulkSubmitter</name>
    <message>
        <source>Couldn&apos;t create tasks.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CameraOverlayCompositor</name>
    <message>
        <source>Camera failed to start.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CapturePopoverView</name>
    <message>
        <source>NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connecting to Norvane…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CloudflareR2Provider</name>
    <message>
        <source>Cloudflare account ID is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R2 bucket name is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Public URL base is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Public URL base must be a valid URL.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R2 access key ID is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R2 secret access key is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R2 upload failed (HTTP %1).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CloudinaryProvider</name>
    <message>
        <source>Cloudinary cloud name is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudinary upload preset is required.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloudinary upload failed (HTTP %1).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ComposeTabPicker</name>
    <message>
        <source>Tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ComposerView</name>
    <message>
        <source>Compose mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Single task</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Multiple tasks — one per line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Task name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One task per line…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bulk task names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record screen with voice and attach the video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press Esc to close.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create Tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create Task</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create all tasks (Ctrl+Return)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create task in Norvane (Ctrl+Return)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CopyButton</name>
    <message>
        <source>Copied</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CountdownWindow</name>
    <message>
        <source>Recording countdown</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CreateFailure</name>
    <message>
        <source>The task may have been created: the request was sent in full, but no readable answer came back. Retry looks for it in the list before creating it again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An open task of this name is already in the list: it was probably created before its answer was lost. Retry creates another one.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DateValuePopover</name>
    <message>
        <source>YYYY-MM-DD</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DescriptionEditor</name>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DesktopWindowsModule</name>
    <message>
        <source>NorvaneBar cannot show its windows: %1
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DirectUploadReply</name>
    <message>
        <source>The file to send ended before its length</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The server&apos;s answer is not HTTP</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DueDatePopover</name>
    <message>
        <source>Today 5 PM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tomorrow 9 AM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>YYYY-MM-DD</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Due date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Minute</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Include time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remind me</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Schedules a desktop notification before the due time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Notify</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EditTemplateSheet</name>
    <message>
        <source>Edit Template</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pinned list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No pinned list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Task name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FacecamChoices</name>
    <message>
        <source>Facecam</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show facecam while recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No image selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Image…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image couldn&apos;t be copied.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.heic *.webp *.bmp)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FacecamPreviewWindow</name>
    <message>
        <source>Facecam preview</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FailureMessage</name>
    <message>
        <source>An unknown error occurred.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldChip</name>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldChipTitles</name>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Assignee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>User %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Due date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tags</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not set</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unchecked</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n assignees</source>
        <translation>
            <numerusform>%n assignee</numerusform>
            <numerusform>%n assignees</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n tags</source>
        <translation>
            <numerusform>%n tag</numerusform>
            <numerusform>%n tags</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n selected</numerusform>
            <numerusform>%n selected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FieldChipsRow</name>
    <message>
        <source>Fields</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More +</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldChipsViewModel</name>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Assignee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Due date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Priority</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tags</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear assignees</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No priority</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter a number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>https://…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>name@example.com</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>+1 555 000 0000</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldVisibility</name>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Assignee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Due date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Priority</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tags</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldVisibilitySettingsView</name>
    <message>
        <source>Default Fields</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hidden fields are left at their Norvane defaults when a task is created.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom Fields in “</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Visibility is remembered per field across lists.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This list has no custom fields.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit in Norvane — </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pick a list in the composer to configure its custom fields.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FileInMemory</name>
    <message>
        <source>Not enough memory to read it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file ended early.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FilterChip</name>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GStreamerCaptureStream</name>
    <message>
        <source>The screen capture could not use the PipeWire connection: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The screen capture could not be set up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The screen capture did not start: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GStreamerMovieWriter</name>
    <message>
        <source>The movie could not be set up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie could not take the microphone&apos;s sound.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie&apos;s pipeline did not start.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GStreamerMovieWriterFactory</name>
    <message>
        <source>The movie could not be set up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GStreamer&apos;s QuickTime muxer (qtmux, of gstreamer1.0-plugins-good) is not installed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No H.264 encoder is installed for GStreamer (x264enc of gstreamer1.0-plugins-ugly, or openh264enc of gstreamer1.0-plugins-bad).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GStreamerPipeline</name>
    <message>
        <source>%1: GStreamer could not start (%2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pipeline did not start.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pipeline was stopped before it played.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GStreamerScreenCapture</name>
    <message>
        <source>The screen cannot be captured: the X display &quot;%1&quot; does not open.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GeneralSettingsView</name>
    <message>
        <source>Show due count in panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shows overdue and due-today tasks assigned to you next to the icon.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default workspace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Used by the Tasks tab and the global selector until you switch to a different workspace or list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Git Branch Names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Branch name format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>:taskId:_:taskName:_:username:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Used by “Copy Git branch name”. Placeholders: :taskId: (includes the NV- prefix or your custom task ID, so Norvane&apos;s GitHub integration links the branch to the task), :taskName:, and :username:.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default reminder lead time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Used for local reminder notifications. This does not change the task&apos;s due date in Norvane.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GoogleDriveAuthError</name>
    <message>
        <source>Google sign-in failed: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Google OAuth client ID is not configured for this build.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sign in with Google to connect Drive.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GoogleDriveProvider</name>
    <message>
        <source>Google Drive upload failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not make the file viewable.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotKeyManager</name>
    <message>
        <source>New task from anywhere</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screenshot capture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen recording</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KeychainStoreError</name>
    <message>
        <source>Couldn&apos;t save your API token to the system keyring (error %1).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ListContext</name>
    <message>
        <source>Couldn&apos;t load list details. Check your connection.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LocationPickerView</name>
    <message>
        <source>Search lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Workspace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh lists from Norvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading lists…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No lists in this workspace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try again</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LocationPickerViewModel</name>
    <message>
        <source>Choose workspace and list…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No lists match “%1”</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LocationRow</name>
    <message>
        <source>Remove from bookmarks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add to bookmarks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LocationSelector</name>
    <message>
        <source>List for new tasks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MyDayStore</name>
    <message>
        <source>%1… (page %2)</source>
        <extracomment>The loading message before a further page of tasks: &quot;Loading tasks… (page 2)&quot;.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading tasks…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t resolve a done status for this list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading tasks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MyDayView</name>
    <message>
        <source>Tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Assignee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search checks task name, task ID, list, assignee, and status.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try again</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MyDayViewModel</name>
    <message>
        <source>Assigned to me</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Anyone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unassigned</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No open tasks assigned to %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No open tasks match the current filters.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No open tasks assigned to you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No unassigned tasks match the current filters.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No tasks match “%1”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All statuses</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All lists</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NVError</name>
    <message>
        <source>Unexpected response from Norvane.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Norvane rate limit reached. Try again in a moment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t reach Norvane. Check your connection.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You&apos;re not signed in. Add your Norvane API token in Settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your Norvane workspace storage limit has been reached. Upgrade your plan or free up space, then try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Norvane rejected the API token. Check it in Settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Norvane error (HTTP %1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NotificationScheduler</name>
    <message>
        <source>Open in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Task created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t create task</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All tasks created in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t create tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Task reminder</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n attachments failed to upload</source>
        <translation>
            <numerusform>%n attachment failed to upload</numerusform>
            <numerusform>%n attachments failed to upload</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Connect to Norvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NorvaneBar creates Norvane tasks straight from your panel. Paste your personal API token to get started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Norvane personal API token</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Personal API token (pk_…)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Find your token: Norvane → Settings → Apps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PersonalTokenError</name>
    <message>
        <source>That doesn&apos;t look like a Norvane personal API token. Copy the full token from Norvane → Settings → Apps (it starts with pk_).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PopoverWindow</name>
    <message>
        <source>NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Priorities</name>
    <message>
        <source>Urgent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>High</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Normal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Low</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QAbstractSocket</name>
    <message>
        <source>The remote host closed the connection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Socket operation timed out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QNetworkReply</name>
    <message>
        <source>Operation canceled</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QuickLinkRow</name>
    <message>
        <source>Remove </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QuickTimes</name>
    <message>
        <source>In 30 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In 3 hours</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tomorrow morning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>+1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This evening</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tomorrow 9 AM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next Monday</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remind me</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move due date…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingControlsView</name>
    <message>
        <source>Paused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recorded %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide facecam</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show facecam</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingControlsViewModel</name>
    <message>
        <source>No mic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mic connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mic on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone audio is being saved to the recording.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone signal detected. Waiting for audio to be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting for microphone signal from system.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingDefaultsViewModel</name>
    <message>
        <source>720p</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1080p</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Square</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rounded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Circle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blur</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom image</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RecordingReviewView</name>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the recording to disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re-record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attach to task</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingReviewViewModel</name>
    <message>
        <source>%1 · %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen Recording %1.mov</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingSampleWriter</name>
    <message>
        <source>Missing video frame data.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not configure video writer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Missing microphone format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not configure audio writer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone audio could not be written to the recording file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No video data was captured. Try recording for at least a few seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No video frames were captured. Check that screen sharing is allowed in the desktop&apos;s settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recording failed (%1): %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recording failed: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordingWindows</name>
    <message>
        <source>Recording controls</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Review Recording</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RegionSelectionWindow</name>
    <message>
        <source>Select a region to record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ReminderLeadTime</name>
    <message>
        <source>At due time</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n minutes before</source>
        <translation>
            <numerusform>%n minute before</numerusform>
            <numerusform>%n minutes before</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ReminderLeads</name>
    <message>
        <source>At due time</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n min before</source>
        <translation>
            <numerusform>%n min before</numerusform>
            <numerusform>%n min before</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RowActionBar</name>
    <message>
        <source>Copy link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copied link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Git branch name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copied branch name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading statuses…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More actions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mark complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SaveTemplateSheet</name>
    <message>
        <source>Save as Template</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Template name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SchemeHandlerEntry</name>
    <message>
        <source>Could not create the folder %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not write %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NorvaneBar could not make itself the handler of the browser&apos;s answer to sign-in, so the sign-in can&apos;t finish. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not remove %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenCastPortal</name>
    <message>
        <source>The desktop shared no screen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The desktop ended the screen sharing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The desktop&apos;s screen sharing portal did not answer.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenPickerView</name>
    <message>
        <source>Screens</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a Region…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Windows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No windows to record</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenPickerViewModel</name>
    <message>
        <source>Screen %1 — %2 × %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenRecordingAlert</name>
    <message>
        <source>Screen Recording</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenRecordingCoordinator</name>
    <message>
        <source>No microphone signal from system. Check that a microphone is connected and not muted in the sound settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Facecam unavailable: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not read file size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone was enabled but no audio was saved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone audio could not be written to the recording file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenRecordingEngine</name>
    <message>
        <source>Recording is approaching Norvane&apos;s 1 GB limit (%1 estimated).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Microphone access is required for voice in screen recordings. Check that a microphone is connected and not muted in the sound settings.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenRecordingSettingsSection</name>
    <message>
        <source>Screen Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Records screen and microphone, attaches the video, optionally applies a template, then opens the popover. Norvane allows attachments up to 1 GB.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply template on recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Defaults used when you start a screen recording from the composer, panel, or hotkey.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record microphone by default</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show cursor by default</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Include facecam by default</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Facecam position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Facecam shape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Facecam background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Max recording duration</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScreenRecordingSetupSheet</name>
    <message>
        <source>Screen Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose what to record, then use the floating bar to pause or stop. You&apos;ll review the video before attaching it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Max duration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record microphone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show cursor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Include facecam</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Facecam appears as a floating preview while you record and is burned into the exported video. Hide it anytime from the recording bar.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The screen chosen last time is recorded again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Another Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Screen…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fields</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Templates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>NorvaneBar Settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ShortcutSettingsSection</name>
    <message>
        <source>Shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The compose shortcut opens NorvaneBar. The screenshot shortcut captures a region, attaches it, optionally applies a template, then opens the popover.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This desktop lets no program bind shortcuts of its own. To open NorvaneBar from the keyboard, bind this command to a shortcut in the desktop&apos;s keyboard settings (launching NorvaneBar again does the same):</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Command that opens NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New task from anywhere</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screenshot capture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply template on screenshot</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ShortcutSettingsViewModel</name>
    <message>
        <source>Disabled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SignedInPopoverView</name>
    <message>
        <source>NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signed in as %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NorvaneBar settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop to attach</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatusItem</name>
    <message>
        <source>New Task</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record Screen…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quick Links</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NorvaneBar</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatusItemBadge</name>
    <message>
        <source>NorvaneBar — new Norvane task</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n background tasks in progress</source>
        <translation>
            <numerusform>%n background task in progress</numerusform>
            <numerusform>%n background tasks in progress</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StorageProviderError</name>
    <message>
        <source>Unexpected response from storage provider.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SubmitController</name>
    <message>
        <source> tasks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SubmitDoneView</name>
    <message>
        <source>Retry uploads</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy task link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Branch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Git branch name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create New Task</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SubmitFailedView</name>
    <message>
        <source>Back to editing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create Anyway</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SubmitProgressView</name>
    <message>
        <source>Create New Task</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SubmitViewModel</name>
    <message>
        <source>Creating %1…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uploading attachment %1 of %2…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creating task %1 of %2…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Task created</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n attachments failed to upload</source>
        <translation>
            <numerusform>%n attachment failed to upload</numerusform>
            <numerusform>%n attachments failed to upload</numerusform>
        </translation>
    </message>
    <message>
        <source>Task may already exist</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t create task</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An open task named “%1” is already in this list. It was probably created before its answer was lost.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background task completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attachment failed to upload</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All tasks created in Norvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TagsPopover</name>
    <message>
        <source>No tags in this Space yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New tag</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TaskCounts</name>
    <message numerus="yes">
        <source>%n tasks created</source>
        <translation>
            <numerusform>%n task created</numerusform>
            <numerusform>%n tasks created</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n tasks failed</source>
        <translation>
            <numerusform>%n task failed</numerusform>
            <numerusform>%n tasks failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TasksTabState</name>
    <message>
        <source>Overdue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Due today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TemplateMenuButton</name>
    <message>
        <source>Template</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply or save a template</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Current as Template…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TemplateRow</name>
    <message>
        <source>No pinned list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TemplateSettingsView</name>
    <message>
        <source>Templates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Templates prefill the composer. A pinned list is selected automatically when applied.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No templates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save a template from the composer menu, or create one here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Template</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UnavailablePicker</name>
    <message>
        <source>Screen recording isn&apos;t available on this desktop.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>X11ScreenPicker</name>
    <message>
        <source>There is no X11 display to record.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose What to Record</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>NorvaneBar cannot find its windows module.
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
