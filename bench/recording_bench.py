"""Screen recording benchmark: the whole screen (1920×1080 by default) with the microphone, for 60 s,
recorded by NorvaneBar's engine (bench's recording-client: GStreamer capture, x264 at the 1080p bit
rate of 6 Mbit/s, raw PCM sound, QuickTime) and by ffmpeg doing the same in the same run:
`ffmpeg -f x11grab … -f pulse … -c:v libx264 -preset veryfast -pix_fmt yuv420p -b:v 6M -c:a pcm_s16le`, and by the
bare GStreamer pipeline of the same elements and encoder settings in gst-launch-1.0, the floor of
what those elements hold in memory. A ball moves in a window meanwhile, so the screen changes. Runs
inside `desktop-session run --microphone --screen WxH`.

  frames_offered      frames the capture handed the engine (1,800 in 60 s at 30 a second)
  frames_written      video frames in the movie (ffprobe counts them)
  frames_dropped      offered but not written (target 0)
  cpu                 the client's CPU time (user + system, whole process) over ffmpeg's (target at
                      most 0.8)
  rss_growth          the client's resident memory growth from before the start to its peak while
                      recording (target at most 50 MB), and its anonymous, file and shared parts
                      at the stop
  pipeline_rss_growth the bare pipeline's: its peak against gst-launch-1.0 idling on a pipeline
                      that does nothing
  rss_peak/ffmpeg     the client's peak against ffmpeg's
  bitrate/target      the movie's bytes × 8 over its length, against the 6 Mbit/s asked for
  audio_start_offset  the sound track's first sample against the first frame (target within one
                      frame, 1/30 s)

Prints one figure a line as "name value unit". Exits 1 when a recording fails or a figure misses
its target.

usage: recording_bench.py RECORDING_CLIENT [--seconds N] [--size WxH]"""

import argparse
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

FRAME = 1 / 30


def usage_of(command):
    """Runs a command to its end: its status, output, errors, CPU time (user + system) in seconds
    and peak resident memory in KiB, from its own usage as it is reaped."""
    with tempfile.TemporaryFile("w+") as out, tempfile.TemporaryFile("w+") as err:
        process = subprocess.Popen(command, stdout=out, stderr=err, text=True)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        return process.returncode, out.read(), err.read(), usage.ru_utime + usage.ru_stime, usage.ru_maxrss


def peak_kib(pid):
    """VmHWM of a running process, in KiB."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        for line in status:
            if line.startswith("VmHWM:"):
                return int(line.split()[1])
    return 0


def gst_launch_peak(pipeline, seconds):
    """Runs gst-launch-1.0 on a pipeline for `seconds`, then ends it with one SIGINT (a second would
    leave the file unfinished): its peak resident memory in KiB, read before it ends."""
    process = subprocess.Popen(["gst-launch-1.0", "-q", "-e"] + pipeline.split(),
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    time.sleep(seconds)
    peak = peak_kib(process.pid)
    process.send_signal(signal.SIGINT)
    _, err = process.communicate(timeout=60)
    if process.returncode != 0:
        print(err, file=sys.stderr)
        raise RuntimeError("gst-launch-1.0 failed")
    return peak


def bare_pipeline_growth(seconds, movie):
    """The resident memory the elements of the recording hold, without the engine: the bare
    pipeline's peak less gst-launch-1.0's own on a pipeline that does nothing, in MB."""
    recording = gst_launch_peak(
        "ximagesrc use-damage=false ! video/x-raw,framerate=30/1 ! queue max-size-buffers=2 ! videoconvert"
        " ! video/x-raw,format=I420 ! queue max-size-buffers=2"
        " ! x264enc bitrate=6000 speed-preset=veryfast tune=zerolatency threads=1 ! video/x-h264,profile=high"
        f" ! h264parse ! qtmux name=mux ! filesink location={movie}"
        " pulsesrc ! audio/x-raw,format=S16LE,layout=interleaved,rate=48000 ! audiorate ! mux.", seconds)
    idle = gst_launch_peak("fakesrc is-live=true sizetype=empty ! fakesink", 1)
    return (recording - idle) * 1.024


def figures(text):
    values = {}
    for line in text.splitlines():
        parts = line.split()
        if len(parts) == 3:
            values[parts[0]] = parts[1]
    return values


def probe(path):
    """ffprobe's view of a movie: its streams, with the video frames counted."""
    result = subprocess.run(
        ["ffprobe", "-v", "error", "-count_frames", "-show_entries",
         "stream=codec_type,codec_name,profile,nb_read_frames,start_time,duration:format=duration,size",
         "-of", "json", path], capture_output=True, text=True, check=True)
    return json.loads(result.stdout)


def stream(info, kind):
    for entry in info.get("streams", []):
        if entry.get("codec_type") == kind:
            return entry
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("client")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--size", default="1920x1080")
    args = parser.parse_args()
    width, height = (int(v) for v in args.size.split("x"))
    missed = []

    def report(name, value, unit, target=None, ok=True):
        suffix = "" if ok else "   MISSED " + target
        if not ok:
            missed.append(name)
        print(f"{name} {value} {unit}{suffix}", flush=True)

    ball = subprocess.Popen(
        ["gst-launch-1.0", "-q", "videotestsrc", "is-live=true", "pattern=ball", "!",
         "video/x-raw,width=640,height=360,framerate=30/1", "!", "ximagesink"],
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(1)
    try:
        status, out, err, client_cpu, _ = usage_of([args.client, str(args.seconds), str(width), str(height)])
        if status != 0:
            print(err, file=sys.stderr)
            print("recording-client failed", file=sys.stderr)
            return 1
        ours = figures(out)
        movie = ours["recording_movie"]
        with tempfile.TemporaryDirectory() as folder:
            baseline = os.path.join(folder, "ffmpeg.mov")
            status, _, err, ffmpeg_cpu, ffmpeg_peak = usage_of(
                ["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "x11grab", "-framerate", "30",
                 "-video_size", f"{width}x{height}", "-draw_mouse", "1", "-i", os.environ["DISPLAY"],
                 "-f", "pulse", "-i", "default", "-t", str(args.seconds),
                 "-c:v", "libx264", "-preset", "veryfast", "-pix_fmt", "yuv420p", "-profile:v", "high", "-b:v", "6M",
                 "-c:a", "pcm_s16le", "-y", baseline])
            if status != 0:
                print(err, file=sys.stderr)
                print("ffmpeg failed", file=sys.stderr)
                return 1
            ffmpeg_frames = int(stream(probe(baseline), "video")["nb_read_frames"])
            pipeline_growth = bare_pipeline_growth(args.seconds, os.path.join(folder, "pipeline.mov"))
        info = probe(movie)
        video = stream(info, "video")
        audio = stream(info, "audio")
        size = int(info["format"]["size"])
        length = float(info["format"]["duration"])
        os.remove(movie)
    finally:
        ball.terminate()
        ball.wait()

    offered = int(ours["recording_frames_offered"])
    written = int(video["nb_read_frames"])
    report("frames_offered", offered, "frames")
    report("frames_written", written, "frames")
    report("ffmpeg_frames_written", ffmpeg_frames, "frames")
    report("frames_dropped", offered - written, "frames", "0", offered - written <= 0)
    report("video", f"{video['codec_name']}/{video.get('profile', '?')}", "codec",
           "h264/High", video["codec_name"] == "h264" and video.get("profile") == "High")
    report("client_cpu", f"{client_cpu:.2f}", "s")
    report("ffmpeg_cpu", f"{ffmpeg_cpu:.2f}", "s")
    ratio = client_cpu / ffmpeg_cpu
    report("cpu", f"{ratio:.2f}", "ratio", "(target <= 0.8)", ratio <= 0.8)
    growth = float(ours["recording_rss_growth"]) * 1.048576
    report("rss_growth", f"{growth:.1f}", "MB", "(target <= 50)", growth <= 50)
    for kind in ("anonymous", "file", "shared"):
        report(f"rss_{kind}_growth", f"{float(ours[f'recording_rss_{kind}_growth']) * 1.048576:.1f}", "MB")
    report("pipeline_rss_growth", f"{pipeline_growth / 1000:.1f}", "MB")
    peak = float(ours["recording_rss_peak"]) * 1.048576
    report("rss_peak/ffmpeg", f"{peak / (ffmpeg_peak * 1.024 / 1000):.2f}", "ratio")
    report("movie_size", size, "bytes")
    report("movie_length", f"{length:.2f}", "s")
    report("engine_duration", ours["recording_duration"], "s")
    bitrate = size * 8 / length
    report("bitrate/target", f"{bitrate / 6e6:.2f}", "ratio")
    if audio is None:
        report("audio_start_offset", "none", "s", "(a sound track)", False)
    else:
        offset = float(audio["start_time"]) - float(video["start_time"])
        report("audio_start_offset", f"{offset:.4f}", "s", "(target within 1/30 s)", abs(offset) <= FRAME)
    if missed:
        print("MISSED: " + ", ".join(missed))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
