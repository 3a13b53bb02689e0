#include "platform/Native.h"

#include "platform/qt/QtFilePicker.h"
#include "platform/qt/QtLinkOpener.h"
#include "platform/qt/QtPasteboard.h"

namespace vorle::native {

std::unique_ptr<Pasteboard> pasteboard() { return std::make_unique<QtPasteboard>(); }

std::unique_ptr<LinkOpener> linkOpener() { return std::make_unique<QtLinkOpener>(); }

std::unique_ptr<FilePicker> filePicker() { return std::make_unique<QtFilePicker>(); }

} // namespace vorle::native
