#include "app/models/ShortcutText.h"

#include "app/labels/Wording.h"

#include <QCoreApplication>

namespace vorle {

namespace {

struct Modifier {
    int flag;
    QStringView glyph;
    const char *word;
};
constexpr Modifier modifiers[] = {{0x1000, u"⌃", QT_TRANSLATE_NOOP("KeyboardMap", "Ctrl")},
                                  {0x800, u"⌥", QT_TRANSLATE_NOOP("KeyboardMap", "Alt")},
                                  {0x200, u"⇧", QT_TRANSLATE_NOOP("KeyboardMap", "Maj")},
                                  {0x100, u"⌘", QT_TRANSLATE_NOOP("KeyboardMap", "Super")}};

} // namespace

QString shortcutText(const Shortcut &shortcut, KeySpelling spelling) {
    if (shortcut.isNone()) {
        return {};
    }
    const bool glyphs = spelling == KeySpelling::Glyphs;
    QString text;
    for (const Modifier &modifier : modifiers) {
        if ((shortcut.modifiers & modifier.flag) != 0) {
            text += glyphs ? modifier.glyph.toString()
                           : QCoreApplication::translate("KeyboardMap", modifier.word) + u'+';
        }
    }
    if (shortcut.key == u" ") {
        return text + (glyphs ? QStringLiteral(" ") : QString()) +
               QCoreApplication::translate("KeyboardMap", "Espace");
    }
    return text + shownWords(shortcut.key).simplified().toUpper();
}

} // namespace vorle
