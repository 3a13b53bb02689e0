#pragma once

#include "search/web/PageText.h"

namespace vorle::test {

/// What extractPage promises for an HTML page, written with the regular expressions themselves:
/// the yardstick the scanners are held against, by value and by time. Quadratic and worse on
/// hostile pages.
PageText literalPageText(const QString &html, PageExtent extent = PageExtent::Whole);

} // namespace vorle::test
