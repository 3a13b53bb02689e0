#pragma once

#include "app/triage/SectionOrder.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A namespace of its own, so that QML reads `Section.Inbox`.
namespace sections {
Q_NAMESPACE
QML_NAMED_ELEMENT(Section)

/// The main window's sections, in their order.
enum class Section {
    Inbox,     ///< "À trier"
    Program,   ///< "Programme"
    Reserve,   ///< "Réserve"
    Library,   ///< "Bibliothèque"
    Territory, ///< "Ton territoire"
    Report     ///< "Bilan"
};
Q_ENUM_NS(Section)
} // namespace sections

using sections::Section;
inline constexpr int sectionCount = 6;

// The window's sections that hold topics are TopicSection's.
static_assert(static_cast<int>(Section::Inbox) == static_cast<int>(TopicSection::Inbox) &&
              static_cast<int>(Section::Program) == static_cast<int>(TopicSection::Program) &&
              static_cast<int>(Section::Reserve) == static_cast<int>(TopicSection::Reserve) &&
              static_cast<int>(Section::Library) == static_cast<int>(TopicSection::Library));

} // namespace vorle
