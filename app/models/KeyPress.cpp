#include "app/models/KeyPress.h"

#include <qnamespace.h>

#include <algorithm>
#include <iterator>

namespace vorle {

namespace {

/// What the digit row of a French keyboard gives without Shift, a PC's and a Mac's.
constexpr struct {
    int key;
    int digit;
} frenchDigits[] = {
    {Qt::Key_Agrave, 0},     {Qt::Key_Ampersand, 1},  {Qt::Key_Eacute, 2}, {Qt::Key_QuoteDbl, 3},
    {Qt::Key_Apostrophe, 4}, {Qt::Key_ParenLeft, 5},  {Qt::Key_Minus, 6},  {Qt::Key_section, 6},
    {Qt::Key_Egrave, 7},     {Qt::Key_Underscore, 8}, {Qt::Key_Exclam, 8}, {Qt::Key_Ccedilla, 9},
};

/// The place of the 6 in the row of digits, as Linux counts keys.
constexpr quint32 placeOfSix = 15;

} // namespace

KeyPress KeyPress::of(int key, int modifiers, quint32 scanCode) {
    const bool keypad = (modifiers & Qt::KeypadModifier) != 0; // its signs are what they say
    modifiers &= ~static_cast<int>(Qt::KeypadModifier);
    const bool shift = (modifiers & Qt::ShiftModifier) != 0;
    // With ⌘ a minus sign is one, but for the key that has the 6 on a PC's French keyboard.
    const bool minus =
        key == Qt::Key_Minus && (modifiers & Qt::ControlModifier) != 0 && scanCode != placeOfSix;
    if (!shift && !keypad && !minus) {
        const auto *sign =
            std::ranges::find_if(frenchDigits, [key](const auto &each) { return each.key == key; });
        return {sign == std::end(frenchDigits) ? key : Qt::Key_0 + sign->digit, modifiers};
    }
    const bool shiftMakesIt = (key >= Qt::Key_0 && key <= Qt::Key_9) || key == Qt::Key_Question ||
                              key == Qt::Key_Slash || key == Qt::Key_Plus || key == Qt::Key_Equal;
    return {key, shiftMakesIt ? modifiers & ~static_cast<int>(Qt::ShiftModifier) : modifiers};
}

} // namespace vorle
