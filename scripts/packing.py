"""Files put together into texts of many, for tools that would otherwise read the same headers anew
for each: used by check-tidy and check-mac.

Nine tenths of what reading a file takes are the headers of Qt and of the standard library. Files can
stand in one text when they are compiled alike, and none declares for itself what another one names
too: two helpers of one name would clash, or one would hide the other unheard.
"""
import collections
import os
import re
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
AT_ONCE = 100  # files a text: what they include takes longer to read than they do

# What could mean another file's function or type, were it in sight: no member, no local variable.
_word = re.compile(r"(?<![\w.:>])(?:[A-Z]\w+|\w+(?=\())")
_declared = re.compile(r"(?:\b(?:struct|class|enum|using) |[ *&])(\w+)(?=\(|\[|\{|;| =| \{| :|$)")
failing = re.compile(r"^(/[^:]+):\d+:\d+: (?:fatal )?error: ", re.M)


def listed(*patterns):
    """The tree's files of these patterns, as git knows them."""
    return subprocess.check_output(["git", "ls-files", *patterns], cwd=ROOT, text=True).split()


def read(path):
    with open(os.path.join(ROOT, path), "rb") as file:
        return file.read()


def including(names):
    """The text that stands for them all."""
    return "".join(f'#include "{os.path.join(ROOT, name)}"\n' for name in names)


def _own_names(text):
    """What a file's unnamed namespaces declare: at the margin, since clang-format puts it there."""
    names = set()
    for part in re.findall(r"^namespace \{$(.*?)^\} // namespace$", text, re.M | re.S):
        for line in re.findall(r"^[\w\[].*$", part, re.M):
            names.update(_declared.findall(line)[:1])
    return names


class _Pack:
    def __init__(self):
        self.names, self.own, self.used = [], set(), set()


def packs(names, alike=lambda name: None, at_once=AT_ONCE):
    """Lists of files that can stand in one text, the longest first; `alike` gives what has to be
    equal for that."""
    found = collections.defaultdict(list)
    for name in names:
        text = read(name).decode()
        own, used = _own_names(text), set(_word.findall(text))
        for pack in found[alike(name)]:
            if len(pack.names) < at_once and not own & (pack.used | pack.own) and not used & pack.own:
                break
        else:
            pack = _Pack()
            found[alike(name)].append(pack)
        pack.names.append(name)
        pack.own |= own
        pack.used |= used
    return sorted((pack.names for kind in found.values() for pack in kind), key=len, reverse=True)


def parted(names, said):
    """The names parted into those that a compiler's errors name and the rest; into two halves where
    that leads nowhere."""
    named = {os.path.relpath(path, ROOT) for path in failing.findall(said)}
    apart = [name for name in names if name in named]
    if not apart or len(apart) == len(names):
        apart = names[::2]
    return apart, [name for name in names if name not in apart]
