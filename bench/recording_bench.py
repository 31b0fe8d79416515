"""Screen recording benchmark: the whole screen (1920×1080 by default) with the microphone, for 60 s,
recorded by NorvaneBar's engine (bench's recording-client: GStreamer capture, x264 at the 1080p bit
rate of 6 Mbit/s, raw PCM sound, QuickTime) and by ffmpeg doing the same in the same run:
`ffmpeg -f x11grab … -f pulse … -c:v libx264 -preset veryfast -pix_fmt yuv420p -b:v 6M -c:a pcm_s16le`. A ball moves
in a window meanwhile, so the screen changes. Runs inside `desktop-session run --microphone
--screen WxH`.

  frames_offered      frames the capture handed the engine (1,800 in 60 s at 30 a second)
  frames_written      video frames in the movie (ffprobe counts them)
  frames_dropped      offered but not written (target 0)
  cpu                 the client's CPU time (user + system, whole process) over ffmpeg's (target at
                      most 0.8)
  rss_growth          the client's resident memory growth from before the start to its peak while
                      recording (target at most 50 MB)
  bitrate/target      the movie's bytes × 8 over its length, against the 6 Mbit/s asked for
  audio_start_offset  the sound track's first sample against the first frame (target within one
                      frame, 1/30 s)

Prints one figure a line as "name value unit". Exits 1 when a recording fails or a figure misses
its target.

usage: recording_bench.py RECORDING_CLIENT [--seconds N] [--size WxH]"""

import argparse
import json
import os
import resource
import subprocess
import sys
import tempfile
import time

FRAME = 1 / 30


def cpu_of(command):
    """Runs a command to its end: its status, output, errors and CPU time (user + system) in seconds."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    process = subprocess.run(command, capture_output=True, text=True, check=False)
    status, stdout, stderr = process.returncode, process.stdout, process.stderr
    # The reaped child's usage is in RUSAGE_CHILDREN, read before and after.
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = (after.ru_utime - before.ru_utime) + (after.ru_stime - before.ru_stime)
    return status, stdout, stderr, cpu


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
        status, out, err, client_cpu = cpu_of([args.client, str(args.seconds), str(width), str(height)])
        if status != 0:
            print(err, file=sys.stderr)
            print("recording-client failed", file=sys.stderr)
            return 1
        ours = figures(out)
        movie = ours["recording_movie"]
        with tempfile.TemporaryDirectory() as folder:
            baseline = os.path.join(folder, "ffmpeg.mov")
            status, _, err, ffmpeg_cpu = cpu_of(
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
