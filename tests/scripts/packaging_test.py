"""What packages are made of besides the program: its font, its icons, its manual."""
import gzip
import hashlib
import os
import pathlib
import runpy
import shutil
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

    # What stands in for a Mac: each notes how it was called, and leaves what it would.
    MAC = {
        "uname": 'test "${1:-}" = -m && echo arm64 || echo Darwin',
        "brew": 'test "$1" = --prefix && echo "$TOOLS/qt" || true',
        "cmake": 'while [ "$1" != -B ]; do shift; done\nmkdir -p "$2/bin" "$2/packaging/share" "$2/packaging/widget" '
                 '"$2/app"\nfor name in vorle vorle-guard vorle-demo-agent; do echo "$name" >"$2/bin/$name"; '
                 'chmod +x "$2/bin/$name"; done\necho widgets >"$2/app/libvorle-widgets.dylib"\n'
                 'for list in . share widget; do echo list >"$2/packaging/$list/Info.plist"; done',
        "ninja": ":", "install_name_tool": ":", "spctl": ":",
        "otool": 'test "$1" = -l || printf "%s:\\n\\t${HELD:-/usr/lib}/libcurl.4.dylib\\n" "$2"',
        "xcrun": 'if [ "$1" = swiftc ]; then while [ "$1" != -o ]; do shift; done; echo "$3" >"$2"; fi',
        "codesign": 'rights=""; for word; do case "$last" in --entitlements) rights=$(tr -d "\\n\\t" <"$word") ;; '
                    'esac; last=$word; done; echo "codesign-rights $rights" >>"$TOOLS/log"',
        "ditto": 'for word; do last=$word; done; echo zip >"$last"',
        "qt/bin/macdeployqt": 'mkdir -p "$1/Contents/Frameworks/QtCore.framework"\n'
                              'mkdir -p "$1/Contents/PlugIns/platforms"\necho >"$1/Contents/PlugIns/platforms/a.dylib"',
    }

    def bundled(self, *words, **variables):
        """A rehearsal of scripts/bundle: its status and words, what was called, and the folder it made."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        root, tools = pathlib.Path(folder.name) / "tree", pathlib.Path(folder.name) / "tools"
        for name in ["scripts/bundle", "scripts/setup.sh", "scripts/packages.txt", "packaging", "CMakeLists.txt",
                     "THIRD-PARTY.md"]:
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if (ROOT / name).is_dir() else shutil.copy)(ROOT / name, root / name)
        (root / ".cache/font-static").mkdir(parents=True)
        (root / "packaging/icons/draw").write_text('#!/bin/sh\nmkdir -p "$2"\necho >"$2/vorle.icns"\n')
        sparkle = pathlib.Path(folder.name) / "Sparkle-2/Sparkle.framework/Versions/B"
        for part in ["XPCServices/Downloader.xpc", "Updater.app"]:
            (sparkle / part).mkdir(parents=True)
        (sparkle / "Autoupdate").write_text("autoupdate")
        for name, does in self.MAC.items():
            path = tools / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(f'#!/usr/bin/env bash\necho "{path.name} $*" >>"$TOOLS/log"\nlast=""\n{does}\n')
            path.chmod(0o755)
        done = subprocess.run(["bash", root / "scripts/bundle", *words], text=True, capture_output=True, env={
            **{key: value for key, value in os.environ.items() if not key.startswith("VORLE_")},
            "PATH": f"{tools}:{os.environ['PATH']}", "TOOLS": str(tools),
            **{key: value.replace("FOLDER", folder.name) for key, value in variables.items()}})
        log = tools / "log"
        return done, log.read_text().splitlines() if log.exists() else [], root / "build/bundle"

    def test_a_bundle_is_signed_from_the_inside_out_each_part_with_its_own_rights(self):
        signer = "Developer ID Application: Ada (TEAM42)"
        done, calls, made = self.bundled(VORLE_SIGN_AS=signer, VORLE_NOTARY="ada", VORLE_SPARKLE="FOLDER/Sparkle-2")
        self.assertEqual(done.returncode, 0, done.stderr)
        signed = [(call.split("vorle.app", 1)[1].lstrip("/"), rights) for call, rights in zip(calls, calls[1:])
                  if call.startswith("codesign --force")]
        order = [name for name, rights in signed]
        for name, holder in [("a.dylib", ""), ("Downloader.xpc", "Sparkle.framework"), ("Autoupdate", "Sparkle.framework"),
                             ("Updater.app", "Sparkle.framework"), ("QtCore.framework", ""), ("Sparkle.framework", ""),
                             ("vorle-guard", ""), ("vorle-demo-agent", ""), ("libvorle-widgets.dylib", ""),
                             ("VorleShare.appex", ""), ("VorleWidget.appex", "")]:
            at = [order.index(each) for each in order if each.endswith(name)]
            self.assertEqual(len(at), 1, name)
            outer = [order.index(each) for each in order if (each.endswith(holder) if holder else each == "")]
            self.assertLess(at[0], outer[0], name)
        self.assertEqual(order[-1], "")
        rights = {name: said for name, said in signed if "key" in said}
        self.assertEqual(len(rights), 3, "Qt’s libraries have no right of the app’s")
        for name, said in rights.items():
            self.assertIn("<string>TEAM42.fr.vorle.vorle</string>", said)
            self.assertEqual("app-sandbox" in said, name.endswith(".appex"), name)
            self.assertEqual("apple-events" in said, name == "", name)
        self.assertFalse([call for call in calls if "--deep" in call])
        for call in calls:
            if call.startswith("codesign --force"):
                self.assertIn("--options runtime", call)
        notarised = [call.split()[1] for call in calls if call.startswith("xcrun") and "swiftc" not in call]
        self.assertEqual(notarised, ["notarytool", "stapler"])
        self.assertEqual(len([call for call in calls if call.startswith("ditto")]), 2, "again, with its ticket")
        inside = made / "vorle.app/Contents"
        for name in ["MacOS/vorle", "MacOS/libvorle-widgets.dylib", "Resources/vorle.icns", "Info.plist",
                     "PlugIns/VorleShare.appex/Contents/MacOS/VorleShare",
                     "PlugIns/VorleWidget.appex/Contents/Info.plist"]:
            self.assertTrue((inside / name).exists(), name)
        cask = (made / "vorle.rb").read_text()
        self.assertNotIn("@", cask.replace("#{", ""))
        self.assertIn(hashlib.sha256(b"zip\n").hexdigest(), cask)

    def test_a_bundle_for_this_mac_alone_belongs_to_no_group(self):
        done, calls, made = self.bundled("--unsigned")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue((made / "vorle.app").exists())
        rights = [call for call in calls if call.startswith("codesign-rights") and "key" in call]
        self.assertEqual(len(rights), 3)
        self.assertFalse([each for each in rights if "application-groups" in each])
        self.assertFalse([call for call in calls if "notarytool" in call or "--options" in call])

        for words, variables, said in [((), {}, "VORLE_SIGN_AS"),
                                       (("--unsigned",), {"HELD": "/opt/homebrew/opt/curl/lib"}, "Homebrew")]:
            done, calls, made = self.bundled(*words, **variables)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn(said, done.stderr)
            self.assertFalse([call for call in calls if call.startswith(("codesign", "ditto"))])


if __name__ == "__main__":
    unittest.main()
