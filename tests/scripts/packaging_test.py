"""What packages are made of besides the program: its font, its icons, its manual."""
import gzip
import pathlib
import runpy
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True


class Packaging(unittest.TestCase):
    def unpacked(self, font):
        """What scripts/unpack-font makes of it: nothing where it refuses, which it says."""
        with tempfile.TemporaryDirectory() as folder:
            packed, out = pathlib.Path(folder) / "a.woff", pathlib.Path(folder) / "a.ttf"
            packed.write_bytes(font)
            done = subprocess.run([ROOT / "scripts/unpack-font", packed, out], capture_output=True, text=True)
            self.assertEqual(done.returncode == 0, out.exists())
            self.assertEqual(done.stderr.startswith("unpack-font: "), not out.exists(), done.stderr)
            return out.read_bytes() if out.exists() else None

    def test_a_font_is_as_it_was_before_it_was_packed_or_refused(self):
        def total(data):
            words = data + bytes(-len(data) % 4)
            return sum(struct.unpack(f">{len(words) // 4}I", words)) & 0xFFFFFFFF

        tables = {b"cmap": b"abc" * 50, b"glyf": bytes(range(7)), b"head": b"h" * 8 + bytes(4) + b"t" * 42}
        sums = {tag: total(data) for tag, data in tables.items()}
        body, directory = b"", b""
        for tag, data in tables.items():
            packed = zlib.compress(data)
            packed = packed if len(packed) < len(data) else data
            directory += struct.pack(">4sIIII", tag, 44 + 60 + len(body), len(packed), len(data), sums[tag])
            body += packed + bytes(-len(packed) % 4)
        head = b"wOFF\0\1\0\0" + struct.pack(">IHH", 104 + len(body), 3, 0) + bytes(28)
        font = self.unpacked(head + directory + body)
        self.assertEqual(font[:12], struct.pack(">IHHHH", 0x10000, 3, 32, 1, 16))
        self.assertEqual(total(font), 0xB1B0AFBA, "the sum over the whole file")
        for at in range(12, 60, 16):
            tag, checksum, offset, length = struct.unpack_from(">4sIII", font, at)
            found = font[offset:offset + length]
            if tag == b"head":
                found = found[:8] + bytes(4) + found[12:]
            self.assertEqual((found, checksum, offset % 4), (tables[tag], sums[tag], 0))

        whole = head + directory + body
        for name, damaged in {
                "no font": b"<html>", "cut off": whole[:-30], "without a directory": whole[:50],
                "another byte": whole[:-57] + b"?" + whole[-56:], "no zlib": whole[:104] + b"????" + whole[108:],
                "too long": whole.replace(struct.pack(">I", 150), struct.pack(">I", 140)),
                "too short": whole.replace(struct.pack(">I", 150), struct.pack(">I", 160)),
                "huge": whole.replace(struct.pack(">I", 150), struct.pack(">I", 1 << 31))}.items():
            self.assertIsNone(self.unpacked(damaged), name)

    def test_the_icon_of_a_mac_holds_each_size_under_the_type_that_means_it(self):
        draw = runpy.run_path(str(ROOT / "packaging/icons/draw"))
        sizes = {*draw["MAC"].values(), *draw["APART"]}
        drawn = {size: [bytes([x % 256, y % 256, (x * y) // size % 256, 255 if x > y else 0])
                        for y in range(size) for x in range(size)] for size in sizes}
        icon = draw["container"](drawn)
        self.assertEqual(icon[:8], b"icns" + struct.pack(">I", len(icon)))
        found, at = {}, 8
        while at < len(icon):
            kind, length = struct.unpack_from(">4sI", icon, at)
            found[kind] = icon[at + 8:at + length]
            at += length
        self.assertEqual(at, len(icon))
        # Each type's pixels a side, as their names mean it; retina ones have twice as many.
        for kind, size in {b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256, b"ic08": 256, b"ic14": 512,
                           b"ic09": 512, b"ic10": 1024}.items():
            self.assertEqual(struct.unpack_from(">II", found.pop(kind), 16), (size, size), kind)
        for size, (colours, mask) in {16: (b"is32", b"s8mk"), 32: (b"il32", b"l8mk")}.items():
            packed, planes, at = found.pop(colours), b"", 0
            while at < len(packed):
                count = packed[at]
                if count < 128:
                    planes += packed[at + 1:at + 2 + count]
                    at += 2 + count
                else:
                    planes += packed[at + 1:at + 2] * (count - 125)
                    at += 2
            wanted = [bytes(pixel[i] for pixel in drawn[size]) for i in range(4)]
            self.assertEqual(planes, b"".join(wanted[:3]))
            self.assertEqual(found.pop(mask), wanted[3])
        self.assertEqual(found, {})

    def test_the_manual_shows_what_the_help_says_and_none_of_it_is_a_request(self):
        help_text = """vorle, ta veille.

Usage : vorle COMMANDE [OPTIONS]
Sans commande, la fenêtre s’ouvre.

  fouille [--demo]
      lance une recherche
  .trier ID
      avec -- et \\ dedans

Le reste est là.
"""
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "vorle"
            program.write_text("#!/bin/sh\ncase $1 in\n--version) echo 'vorle 7.8.9' ;;\n--help) cat <<'END'\n"
                               f"{help_text}END\n;;\n*) echo \"for $2\" ;;\nesac\n", encoding="utf-8")
            program.chmod(0o755)
            out = pathlib.Path(folder) / "out"
            subprocess.run([ROOT / "packaging/linux/prepare", program, out], check=True)
            page = gzip.decompress((out / "vorle.1.gz").read_bytes()).decode()
            package = gzip.decompress((out / "changelog.Debian.gz").read_bytes()).decode()
            self.assertEqual((out / "_vorle").read_text(), "for zsh\n")
            self.assertTrue((out / "icons/512.png").exists())
        self.assertTrue(package.startswith("vorle (7.8.9-1) "), package)
        requests = {line.split()[0] for line in page.splitlines() if line[:1] in ".'"}
        self.assertLessEqual(requests, {".TH", ".SH", ".B", ".TP", ".PP", ".I"})
        for said in ["vorle 7.8.9", "\\fBfouille\\fR [\\-\\-demo]\nlance une", "\\fB\\&.trier\\fR ID", "et \\e dedans",
                     "Le reste est là."]:
            self.assertIn(said, page)


if __name__ == "__main__":
    unittest.main()
