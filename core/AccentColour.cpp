#include "core/AccentColour.h"

namespace vorle {

ModeColour accentColour(Accent accent) {
    switch (accent) {
    case Accent::Framboise:
        return {QStringLiteral("#B3265E"), QStringLiteral("#FF86AE")};
    case Accent::Lagune:
        return {QStringLiteral("#0E7268"), QStringLiteral("#56CFC0")};
    case Accent::Indigo:
        return {QStringLiteral("#4B45BE"), QStringLiteral("#A9A5FF")};
    case Accent::Braise:
        break;
    }
    return {QStringLiteral("#C9431A"), QStringLiteral("#FF8552")};
}

} // namespace vorle
