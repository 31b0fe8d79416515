#pragma once

// The tabs of the settings window, in their order.
enum class SettingsTab { account, fields, templates, general, attachments };
