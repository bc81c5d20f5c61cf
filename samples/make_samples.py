#!/usr/bin/env python3
"""Writes the recordings of this folder, except the one that make_rtty.py makes. Always the same output.

Every recording is a list of documents as a decoder sends them: each holds the text of a few seconds with its times,
positions in the channel's running text and qualities; one without data ends the running transmissions.
"""
import datetime
import os
import random
from xml.sax.saxutils import escape, quoteattr

FOLDER = os.path.dirname(os.path.abspath(__file__))
START = datetime.datetime(2026, 3, 14, 9, 0, 0)


def time_text(seconds):
    """Time as in the XML, `seconds` after the samples' start."""
    time = START + datetime.timedelta(milliseconds=round(seconds * 1000))
    return time.strftime("%Y-%m-%dT%H:%M:%S.") + "%03dZ" % (time.microsecond // 1000)


def text_element(name, text):
    escaped = escape(text, {"\n": "&#10;"})
    return "<%s>%s</%s>" % (name, escaped, name) if text else ""


def annotation(kind, start, end, **fields):
    inner = "".join(text_element(name, fields.get(name, "")) for name in ("Text", "Comment", "OldText", "CallSign"))
    return '<UserData type="%s" start="%d" end="%d" user="operator" modified="%s">%s</UserData>' % (
        kind, start, end, time_text(3600), inner)


class Recording:
    def __init__(self):
        self.documents = []  # (seconds, XML)

    def end(self, seconds):
        self.documents.append((seconds, '<Transmission start="%s"/>' % time_text(seconds)))

    def lines(self):
        return [xml for _, xml in sorted(self.documents, key=lambda document: document[0])]

    def write(self, name):
        with open(os.path.join(FOLDER, name), "w", encoding="utf-8", newline="\n") as file:
            file.write('<?xml version="1.0" encoding="UTF-8"?>\n<ResultData>\n')
            file.writelines("  %s\n" % line for line in self.lines())
            file.write("</ResultData>\n")

    def write_stream(self, name):
        with open(os.path.join(FOLDER, name), "w", encoding="utf-8", newline="\n") as file:
            file.writelines(line + "\n" for line in self.lines())


class Decoder:
    """One channel of a recording: text goes in piece by piece, at its speed in characters per second."""

    def __init__(self, recording, channel, number, begin, speed, code="None", right_to_left=False):
        self.recording, self.channel, self.number = recording, channel, number
        self.begin, self.now, self.speed = begin, begin, speed
        self.code, self.right_to_left = code, right_to_left
        self.resent = 0  # when text was last sent again; its time stamps are those of its reception
        self.position = 0
        self.stamped = []

    def send(self, text, qualities=(95,), words=3, documents=2, annotations=()):
        """Sends `text` with a time stamp for every few words (0: lines), in documents of a few time stamps; qualities are
        used in turn."""
        pieces = []
        for line in text.splitlines(True):
            single = line.replace(" ", " \0").split("\0") if words else [line]
            pieces += ["".join(single[i:i + words]) for i in range(0, len(single), words)] if words else single
        count = 0
        for first in range(0, len(pieces), documents):
            stamps, content, begin = [], "", self.position
            for piece in pieces[first:first + documents]:
                stamps.append('<TimeStamp time="%s" position="%d" quality="%d"/>' % (
                    time_text(self.now), self.position, qualities[count % len(qualities)]))
                self.stamped.append(self.position)
                count += 1
                content += piece
                self.position += len(piece.encode("utf-16-le")) // 2
                self.now += len(piece) / self.speed
            is_last = first + documents >= len(pieces)
            self._document(begin, stamps, content, annotations if is_last else ())
        return self

    def lose(self, characters):
        """Characters that were sent but not received."""
        self.position += characters
        self.now += characters / self.speed
        return self

    def again(self, characters):
        """The decoder is about to send its last characters again, from a time stamp on, having understood them better."""
        assert self.position - characters in self.stamped
        self.resent = max(self.resent, self.now) + 1
        self.position -= characters
        self.now -= characters / self.speed
        return self

    def _document(self, begin, stamps, content, annotations):
        attributes = 'channel="%d" id="%d" position="%d"' % (self.channel, self.number, begin)
        if self.code != "None":
            attributes += " code=" + quoteattr(self.code)
        if self.right_to_left:
            attributes += ' rtl="true"'
        inner = "".join(stamps) + text_element("Content", content) + "".join(annotations)
        self.recording.documents.append((
            max(self.now, self.resent),
            '<Transmission start="%s" stop="%s"><DataBlock %s>%s</DataBlock></Transmission>' % (
                time_text(self.begin), time_text(self.now), attributes, inner)))


def harbour():
    """Four channels at once: a Morse net with fading, a weather bulletin with losses, position reports with resent text."""
    recording = Recording()
    fading = (97, 95, 92, 88, 71, 55, 42, 61, 83, 94)
    net = Decoder(recording, 1, 1, 0, 1.9, code="Morse")
    net.send("CQ CQ CQ DE QX1TR QX1TR QX1TR K\n", fading)
    net.send("QX1TR DE QB3AA QB3AA GM TNX FER CALL UR RST 579 579 QTH NORTH BANK LIGHT K\n", fading)
    net.send("QB3AA DE QX1TR R R RST 559 QSB HR WX FOG VIS 200 M ", fading)
    net.lose(23)
    net.send("PSE RPT WX K\n", fading).send("QX1TR DE QB3AA WX FOG FOG VIS 200 M BARO 1011 K\n", fading)
    net.send("QB3AA DE QX1TR R QSL TNX 73 SK\n", (93, 90, 85))

    weather = Decoder(recording, 2, 7, 4, 6.1)
    weather.send("ZCZC QA17\n140900 UTC MAR\nCOASTAL WEATHER BULLETIN\n\nGENERAL SITUATION\n")
    weather.send("HIGH 1031 OVER THE SOUTHERN BASIN MOVING EAST SLOWLY\nLOW 988 WEST OF THE OUTER ISLES DEEPENING\n")
    weather.send("\nNORTH BANK\nSW 4 TO 5 INCREASING 6 LATER ", (96, 91, 62, 48, 33))
    weather.lose(41)
    weather.send("RAIN FROM THE WEST\nGOOD BECOMING MODERATE\n\nOUTER ISLES\nS 6 TO 7 ", (58, 81, 90, 95))
    weather.lose(12)
    weather.send("GALE 8 EXPECTED\nSEA VERY ROUGH\n\nSTRAIT AND INNER BAY\nVARIABLE 2 TO 3\nFOG PATCHES\n\nNNNN\n")

    reports = Decoder(recording, 3, 4, 9, 5.0)
    reports.send("MV LINDEN BAY QK8LB 0900 5412N 00731E COURSE 085 SPEED 12.4 KN\n")
    reports.send("MV GREY HERON QK2GH 0905 5398N 00802E COVRSE O92 SPEEO 11,1 KN\n", (74, 51, 40, 38))
    # The decoder found the right speed and sends the spoilt line again.
    reports.again(len("QK2GH 0905 5398N 00802E COVRSE O92 SPEEO 11,1 KN\n"))
    reports.send("QK2GH 0905 5358N 00802E COURSE 092 SPEED 11.1 KN\n", (92,))
    reports.send("MT AMBER COAST QK5AC 0910 5377N 00745E ANCHORED WAITING FOR PILOT\n")
    reports.send("MV LITTLE TERN QK1LT 0915 5402N 00719E ENGINE STOPPED NEED TVG\n", (90, 85, 60))
    reports.again(len("NEED TVG\n")).send("NEED TUG\n")
    reports.lose(64).send("MV LINDEN BAY QK8LB 0930 5415N 00748E COURSE 085 SPEED 12.6 KN\n")

    coded = Decoder(recording, 4, 2, 14, 3.0, code="Five letters")
    groups = random.Random(4)
    for _ in range(8):
        coded.send(" ".join("".join(groups.choice("ABCDEFGHIJKLMNOPQRSTUVWXYZ") for _ in range(5)) for _ in range(6)) + "\n",
                   (88, 86, 84, 79, 82))
    recording.end(max(net.now, weather.now, reports.now, coded.now) + 3)

    second = Decoder(recording, 1, 2, 180, 1.9, code="Morse")
    second.send("VVV VVV DE QX9NB QX9NB ICE PATROL BEACON\n", fading).send("QRU QRU SK\n", (96,))
    recording.end(second.now + 2)
    recording.write("harbour.xml")


def right_to_left():
    """Hebrew and Arabic text with numbers and Latin call signs in it."""
    recording = Recording()
    hebrew = Decoder(recording, 5, 1, 300, 7.0, right_to_left=True)
    hebrew.send("תחזית לאזור החוף\nרוח דרום מערבית 5 עד 6, גשם קל אחר הצהריים.\n")
    hebrew.send("אונייה QK8LB מבקשת נתב בשעה 10:30.\n", (90, 85, 70, 62))
    hebrew.lose(18)
    hebrew.send("ראות טובה, גובה גלים 1.5 מטר.\n")
    arabic = Decoder(recording, 6, 1, 304, 7.0, right_to_left=True)
    arabic.send("نشرة الطقس للمنطقة الساحلية\nرياح شمالية غربية 4 إلى 5 وأمطار خفيفة مساء.\n")
    arabic.send("السفينة QK2GH تصل الساعة 11:15 إلى الرصيف رقم 7.\n", (93, 88, 76))
    arabic.again(len("الرصيف رقم 7.\n")).send("الرصيف رقم 9.\n")
    arabic.send("الرؤية جيدة والبحر هادئ.\n")
    recording.end(max(hebrew.now, arabic.now) + 2)
    recording.write("right-to-left.xml")


def long_bulletin():
    """Some 20,000 characters on one channel: the hourly observations of a chain of buoys."""
    recording = Recording()
    dice = random.Random(20)
    names = ["ALPHA BANK", "BRAVO SHOAL", "CHARLIE REEF", "DELTA SAND", "ECHO POINT",
             "FOXTROT DEEP", "GOLF STRAIT", "HOTEL RIDGE"]
    winds = ["N", "NE", "E", "SE", "S", "SW", "W", "NW", "VRB"]
    buoys = Decoder(recording, 7, 1, 420, 40.0)
    buoys.send("OBSERVATIONS OF THE BUOY CHAIN\nWIND IN KNOTS, WAVES IN METRES, WATER IN DEGREES CELSIUS\n\n", words=0)
    for hour in range(44):
        buoys.send("-- DAY %d %02d00 UTC --\n" % (14 + hour // 24, hour % 24), words=0)
        for name in names:
            line = "%-13s WIND %3s %02d  WAVES %.1f  WATER %4.1f  VIS %d KM" % (
                name, dice.choice(winds), dice.randrange(2, 38), dice.uniform(0.2, 5.9), dice.uniform(4, 11),
                dice.randrange(1, 25))
            if dice.random() < 0.03:
                buoys.send(line[:30], (52,), words=0).lose(len(line) - 30)
            else:
                buoys.send(line + "\n", (dice.choice((99, 98, 96, 90, 77)),), words=0)
    recording.end(buoys.now + 1)
    recording.write("long.xml")


def annotated():
    """A transmission as an operator left it: call signs, comments and a corrected word."""
    recording = Recording()
    text = ("QB3AA DE QX1TR GM OM\nMV LITTLE TERN REPORTS ENGINE STOPPED\nPOSITION 5402N 00719E\n"
            "TUG REQUESTED ETA 1130\nQX1TR DE QB3AA QSL\n")

    def note(kind, word, nth=0, **fields):
        at = -1
        for _ in range(nth + 1):
            at = text.index(word, at + 1)
        return annotation(kind, at, at + len(word), Text=word, **fields)

    Decoder(recording, 8, 1, 960, 2.4).send(text, (95, 93, 90), documents=60, annotations=(
        note("CallSign", "QB3AA", CallSign="QB3AA"),
        note("CallSign", "QX1TR", CallSign="QX1TR"),
        note("Change", "TERN", Comment="garbled, name known from the earlier report", OldText="TFRM"),
        note("Comment", "5402N 00719E", Comment="two miles off the fairway"),
        note("CallSign", "QX1TR", 1, CallSign="QX1TR"),
        note("CallSign", "QB3AA", 1, CallSign="QB3AA")))
    recording.write("annotated.xml")


def live_stream():
    """A stream as a decoder would write it to a pipe: a document per line, two channels, two transmissions."""
    recording = Recording()
    first = Decoder(recording, 1, 1, 1200, 5.0).send("ALL STATIONS DE QC4CR\nNAVIGATIONAL WARNING 12\n", (94, 91))
    second = Decoder(recording, 2, 1, 1203, 5.0).send("QC4CR DE QK5AC\nRECEIVED\n", (80, 66))
    first.send("BUOY 7 UNLIT\n").lose(9).send("UNTIL FURTHER NOTICE\n")
    recording.end(max(first.now, second.now) + 1)
    Decoder(recording, 1, 2, 1230, 5.0).send("QC4CR CLOSING DOWN\n")
    recording.write_stream("live-stream.txt")


if __name__ == "__main__":
    harbour()
    right_to_left()
    long_bulletin()
    annotated()
    live_stream()
