"""The checks of scripts/ find what is planted for them, and pass what is right."""
import json
import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
READERS = SCRIPTS.parent / ".cache/readers"


class Planted(unittest.TestCase):
    def run_check(self, check, files, *arguments):
        """What the check says of a tree of these files: its status and its words."""
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in files.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text.replace("ROOT", folder), encoding="utf-8")
            subprocess.run(["git", "init", "-q"], cwd=folder, check=True)
            subprocess.run(["git", "add", "."], cwd=folder, check=True)
            (root / "scripts").mkdir()
            for name in [check, "packing.py", "mac_files.py"]:
                shutil.copy(SCRIPTS / name, root / "scripts")
            if check == "check-mac":
                shutil.copytree(SCRIPTS / "mac-stubs", root / "scripts/mac-stubs")
                shutil.copy(SCRIPTS / "read-swift.mjs", root / "scripts")
                if READERS.exists():
                    (root / ".cache").mkdir()
                    (root / ".cache/readers").symlink_to(READERS)
            done = subprocess.run([sys.executable, root / "scripts" / check, *arguments], text=True,
                                  cwd=root, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            return done.returncode, done.stdout

    def test_includes(self):
        def tree(pairs):
            return {name: f'#pragma once\n#include "{target}"\n' for name, target in pairs}

        right = [("search/feeds/A.h", "search/web/B.h"), ("search/run/A.cpp", "judging/B.h"),
                 ("app/models/A.cpp", "app/labels/B.h"), ("app/window/A.cpp", "app/cli/B.h"),
                 ("core/A.h", "storage/B.h"), ("tests/core/A.cpp", "app/window/B.h")]
        status, words = self.run_check("check-includes", tree(right))
        self.assertEqual(status, 0, words)
        wrong = [("search/web/A.h", "search/feeds/B.h"), ("search/discovery/A.cpp", "search/web/B.h"),
                 ("search/feeds/A.h", "search/run/B.h"), ("core/A.h", "agents/B.h"), ("storage/A.h", "core/B.h"),
                 ("app/triage/A.h", "app/models/B.h"), ("app/cli/A.cpp", "app/window/B.h"),
                 ("app/models/A.cpp", "app/wiring/B.h"), ("core/A.cpp", "platform/linux/B.h"),
                 ("base/A.cpp", "B.h")]
        status, words = self.run_check("check-includes", tree([*wrong, ("search/A.h", "base/B.h")]))
        self.assertEqual(status, 1)
        for name, target in wrong:
            self.assertIn(f"{name}:2: ", words, target)
        self.assertIn("search/A.h: stands in no room", words)
        status, words = self.run_check("check-includes", {**tree(right), "CMakeLists.txt": ""})
        self.assertEqual(status, 1)
        self.assertIn("app/window may see app/models, which it never does", words)
        self.assertNotIn("app/window may see app/cli,", words)

    def test_french(self):
        right = 'auto a() { return tr("Rien à trier\\u00A0: tout est lu."); }\n'
        status, words = self.run_check("check-french", {"app/window/A.cpp": right})
        self.assertEqual(status, 0, words)
        wrong = {"core/A.cpp": 'auto a() { return "Les sujets n’ont pas été lus"; }\n',
                 "app/screens/A.qml": 'Label { text: qsTr("Rien à trier : lis.") }\n',
                 "app/screens/B.qml": 'Label { text: qsTr("Rien dans « À trier »") }\n'}
        status, words = self.run_check("check-french", wrong)
        self.assertEqual(status, 1)
        for name in wrong:
            self.assertIn(name, words)

    def test_shadows(self):
        def tree(files):
            commands = [{"directory": "ROOT", "file": f"ROOT/{name}",
                         "command": f"clang++ -std=c++20 -Wno-shadow -c ROOT/{name} -o A.o"}
                        for name in files]
            return {**files, "build/compile_commands.json": json.dumps(commands)}

        # Names of another file that stands in one text with it are not in its sight.
        right = {"core/A.cpp": "namespace { constexpr int step = 1; }\nint a() { return step; }\n",
                 "core/B.cpp": "int b(int count) { const int step = count; return step; }\n"}
        status, words = self.run_check("check-tidy", tree(right), "build")
        self.assertEqual(status, 0, words)
        wrong = {**right, "tests/core/CTest.cpp":
                 "struct C { int count = 0; int c(int n) { const int count = n; return count; } };\n"
                 "int c() { return C().c(1); }\n"}
        status, words = self.run_check("check-tidy", tree(wrong), "build")
        self.assertEqual(status, 1)
        self.assertIn("tests/core/CTest.cpp:1:", words)
        self.assertIn("shadows a field", words)
        self.assertNotIn("core/B.cpp", words)

    def test_qml(self):
        right = ('import QtQuick\nListView {\n    id: list\n    delegate: Item {\n'
                 '        required property int index\n        width: list.width\n    }\n}\n')
        status, words = self.run_check("check-qml", {"app/screens/A.qml": right}, "build")
        self.assertEqual(status, 0, words)
        wrong = {"app/screens/A.qml": right.replace("list.width", "liste.width"),
                 "app/screens/B.qml": "import QtQuick\nText { text: QtQuick.nothing; color: paper }\n",
                 "app/screens/C.qml": "import QtQuick\nItem { hight: 3 }\n"}
        status, words = self.run_check("check-qml", wrong, "build")
        self.assertEqual(status, 1)
        for name in wrong:
            self.assertIn(name, words)

    @unittest.skipIf(platform.system() == "Darwin", "there the build reads these files")
    def test_mac(self):
        def adapter(body):
            return ('#import <AppKit/AppKit.h>\n@interface Watcher : NSObject\n- (void)look:(id)sender;\n@end\n'
                    f'@implementation Watcher\n- (void)look:(id)sender {{\n    {body}\n}}\n@end\n')

        told = {"docs/mac.md": "`platform/macos`\n"}
        right = told | {"platform/macos/A.mm": adapter(
            "if (@available(macOS 14, *)) {\n    [NSApp activate];\n}\n[[NSNotificationCenter defaultCenter] "
            'addObserver:self selector:@selector(look:) name:@"a" object:sender];')}
        status, words = self.run_check("check-mac", right, "build")
        self.assertEqual(status, 0, words)
        wrong = {"Selector": "[[NSNotificationCenter defaultCenter] addObserver:self "
                             'selector:@selector(lookAt:) name:@"a" object:sender];',
                 "Method": "[NSWorkspace.sharedWorkspace openFile:sender];",
                 "Type": "NSString *name = NSWorkspace.sharedWorkspace.frontmostApplication;\n[self look:name];",
                 "Available": "[self look:sender];\n[NSApp activate];",
                 "Count": "int count = NSPasteboard.generalPasteboard.changeCount;\n[self look:@(count)];",
                 "Bridge": "CFTypeRef bare = (CFTypeRef)sender;\n[self look:(id)bare];",
                 "Colour": "NSColor *colour = [NSColor noSuchColour];\n[self look:colour];"}
        status, words = self.run_check("check-mac", told | {
            f"platform/macos/{name}.mm": adapter(body) for name, body in wrong.items()}, "build")
        self.assertEqual(status, 1)
        for name in wrong:
            self.assertIn(f"{name}.mm:{8 if name == 'Available' else 7}:", words)

    @unittest.skipIf(platform.system() == "Darwin", "there the build reads these files")
    def test_what_else_a_mac_reads(self):
        folder = SCRIPTS.parent / "packaging/macos"
        right = {f"packaging/macos/{path.relative_to(folder)}": path.read_text(encoding="utf-8")
                 for path in [*folder.rglob("*.plist.in"), *folder.rglob("*.entitlements")]}
        swift, workflow = "packaging/macos/share/Share.swift", ".github/workflows/a.yml"
        right |= {"run": "#!/usr/bin/env bash\necho \"$1\"\n", "core/A.cpp": "int a() { return 1; }\n",
                  swift: "@objc(ShareViewController)\nfinal class Share {\n    var name = \"a\"\n}\n",
                  workflow: "on: push\njobs:\n  a:\n    runs-on: macos-14\n    steps:\n"
                            "      - uses: actions/checkout@v4\n",
                  "core/D.cpp": "#include <sys/stat.h>\n"
                                "mode_t d(const struct stat &file) { return file.st_mode & 0777U; }\n",
                  "app/A.qml": "Window {\n    flags: Qt.platform.os === \"osx\" ? Qt.Dialog : Qt.Tool\n}\n",
                  "core/B.cpp": "#ifdef Q_OS_MACOS\n#endif\n",
                  "docs/mac.md": "| do | `packaging/macos/share`, `core/B.cpp`, `app` |\n"}
        status, words = self.run_check("check-mac", right, "build")
        self.assertEqual(status, 0, words)
        application, rights = "packaging/macos/Info.plist.in", "packaging/macos/share/share.entitlements"
        twice = "<key>CFBundleName</key><string>other</string><key>CFBundleIdentifier</key>"
        wrong = {application: right[application].replace("<key>CFBundleIdentifier</key>", twice)
                 .replace("SUFeedURL", "SUFeed"),
                 "packaging/macos/widget/Info.plist.in": right["packaging/macos/widget/Info.plist.in"]
                 .replace("fr.vorle.vorle.widget", "fr.vorle.widget"),
                 rights: right[rights].replace("app-sandbox", "app-sandbx"),
                 "packaging/macos/vorle.entitlements": "<plist><dict><key>a</key></plist>",
                 "packaging/macos/other/Info.plist": right["packaging/macos/widget/Info.plist.in"],
                 "run": "#!/usr/bin/env bash\nmapfile -t lines\ntimeout 5 ls\n"
                        "echo $BASHPID\nls a --color\nif true; then\n",
                 "app/A.qml": "Window {\n    flags: Qt.Tool | Qt.FramelessWindowHint\n}\n",
                 "core/D.cpp": "#include <sys/stat.h>\n\nmode_t d(unsigned rights) { return rights; }\n",
                 "core/E.cpp": "#include <algorithm>\n#include <cstdint>\n"
                               "long e(std::int64_t a, long b) { return std::max(a, b); }\n",
                 "core/F.cpp": "#include <sys/epoll.h>\n",
                 "app/C.cpp": "void a() {\n    // showMessage(x)\n    item.showMessage(x);\n"
                              "    setOrganizationName(x);\n    pipe2(x, 0);\n}\n",
                 swift: right[swift].replace("ShareView", "OurView").replace("}", ""),
                 workflow: right[workflow].replace("macos-14", "makos-14"), "docs/mac.md": "`core/A.cpp`\n",
                 "core/A.cpp": "#include <QtGlobal>\n#ifdef Q_OS_MACOS\nint a() { return b(); }\n#endif\n"}
        status, words = self.run_check("check-mac", right | wrong, "build")
        self.assertEqual(status, 1)
        for said in ["Info.plist.in: CFBundleName stands there twice", "fr.vorle.widget", "share.entitlements",
                     "run:2:", "run:3:", "run:4:", "run:5:", "run: line 7: syntax error", "core/A.cpp:3:",
                     "Info.plist.in: without SUFeedURL", "other/Info.plist: nobody says", "vorle.entitlements: ",
                     "core/D.cpp:3:", "core/E.cpp:3:", "app/A.qml:2: ", "app/C.cpp:3: on", "app/C.cpp:4: on",
                     "app/C.cpp:5: on", "no Mac has <sys/epoll.h>",
                     "no Swift file beside it says @objc(ShareViewController)",
                     "core/B.cpp: docs/mac.md does not say", "share/Share.swift: docs/mac.md does not say"]:
            self.assertIn(said, words)
        if READERS.exists() and shutil.which("node"):
            for said in ["Share.swift:5: no Swift", "makos-14"]:
                self.assertIn(said, words)
        else:
            self.assertIn("were left out", words)


if __name__ == "__main__":
    unittest.main()
