#!/usr/bin/env python3
"""Makes rtty.xml from what a real decoder makes of real (if artificial) radio teletype audio.

Needs minimodem. Each line of the messages is keyed as 45.45 baud RTTY audio; fading and noise are put over it; minimodem
decodes the result. Its confidence becomes the quality; where it lost the carrier, the time that went by tells how many
characters are missing. Usage: make_rtty.py [--check], with --check nothing is written and a summary printed.
"""
import array
import math
import os
import random
import re
import subprocess
import sys
import tempfile
import wave

from make_samples import Decoder, Recording

RATE = 8000
CHARACTERS_PER_SECOND = 45.45 / 7.5  # start bit, five data bits, one and a half stop bits
SIGNAL = 0.3                         # of full scale, so that the noise is not clipped

# Lines with their noise: 9000 is a good copy, from 16000 on letters are wrong, from 23000 on the carrier is lost.
MESSAGES = (
    (("RYRYRYRYRYRYRYRYRYRYRYRYRYRYRY DE QN4BK QN4BK", 9000),
     ("NORTH BANK RADIO WEATHER 1200 UTC", 11000),
     ("WIND SW 5 TO 6 INCREASING 7 LATER", 14000),
     ("SEA STATE MODERATE OCCASIONALLY ROUGH", 16500),
     ("RAIN AT TIMES VISIBILITY GOOD BECOMING POOR", 18500),
     ("GALE WARNING OUTER ISLES SOUTHERLY GALE 8 EXPECTED SOON", 24500),
     ("GALE WARNING OUTER ISLES SOUTHERLY GALE 8 EXPECTED SOON", 16000),
     ("BAROMETER 1004 FALLING SLOWLY", 12000),
     ("NEXT BROADCAST 1600 UTC DE QN4BK NNNN", 9000)),
    (("DE QN4BK TRAFFIC LIST 1215 UTC", 10000),
     ("QK8LB QK2GH QK5AC QK1LT", 12000),
     ("QK1LT FROM OWNERS TUG LEFT HARBOUR 1140", 17500),
     ("ETA YOUR POSITION 1330 KEEP WATCH ON THIS FREQUENCY", 23500),
     ("CONFIRM BY 1230 DE QN4BK NNNN", 12000)),
)


def write_wave(path, samples):
    with wave.open(path, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(samples.tobytes())


def keyed(text, path):
    """The audio of a line as minimodem keys it."""
    subprocess.run(["minimodem", "--tx", "rtty", "-R", str(RATE), "-f", path], input=text.encode("ascii"), check=True)
    with wave.open(path, "rb") as file:
        samples = array.array("h")
        samples.frombytes(file.readframes(file.getnframes()))
        return samples


def disturbed(samples, noise, dice):
    """The same with slow fading and white noise."""
    phase = dice.uniform(0, 2 * math.pi)
    out = array.array("h")
    for index, sample in enumerate(samples):
        strength = SIGNAL * (0.85 + 0.15 * math.sin(phase + index / RATE * 0.9))
        out.append(max(-32768, min(32767, int(sample * strength + dice.gauss(0, noise)))))
    return out


def decoded(samples, path):
    """What minimodem understands: a list of (text, data characters, confidence), one for each stretch of carrier."""
    write_wave(path, samples)
    output = subprocess.run(["minimodem", "--rx", "rtty", "-R", str(RATE), "-f", path], stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, check=False).stdout.decode("ascii", "replace")
    stretches = re.findall(r"### CARRIER [^\n]*\n(.*?)\n### NOCARRIER ndata=(\d+) confidence=([\d.]+)[^\n]*\n",
                           output, re.S)
    return [(re.sub(r"[^\n -~]", "", text), int(count), float(confidence)) for text, count, confidence in stretches]


def quality(confidence):
    return max(0, min(100, round((confidence - 1.5) * 20)))


def receive(recording, number, begin, lines, folder, dice):
    decoder = Decoder(recording, 9, number, begin, CHARACTERS_PER_SECOND, code="ITA2")
    copied = sent = 0
    for text, noise in lines:
        samples = keyed(text + "\n", os.path.join(folder, "sent.wav"))
        stretches = decoded(disturbed(samples, noise, dice), os.path.join(folder, "received.wav"))
        line_end = decoder.now + len(samples) / RATE
        missing = max(0, round(len(samples) / RATE * CHARACTERS_PER_SECOND) - sum(count for _, count, _ in stretches))
        for index, (part, _, confidence) in enumerate(stretches):
            if index > 0:
                decoder.lose(missing // (len(stretches) - 1))
            decoder.send(part, (quality(confidence),))
        if not stretches:
            decoder.lose(missing)
        decoder.now = max(decoder.now, line_end)
        copied += sum(count for _, count, _ in stretches)
        sent += len(text) + 1
    recording.end(decoder.now + 1)
    return decoder.now, sent, copied


def main():
    recording = Recording()
    dice = random.Random(45)
    begin = 10800
    with tempfile.TemporaryDirectory() as folder:
        for number, lines in enumerate(MESSAGES, 1):
            begin, sent, copied = receive(recording, number, begin, lines, folder, dice)
            print("message %d: %d characters sent, %d received" % (number, sent, copied))
            begin += 30
    if "--check" not in sys.argv:
        recording.write("rtty.xml")


if __name__ == "__main__":
    main()
