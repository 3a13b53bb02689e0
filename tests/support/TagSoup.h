#pragma once

#include <QByteArray>

namespace vorle::test {

/// A page made by spelling each byte as a piece of one: tags and halves of tags, quotes, meta
/// keys, entities, odd blanks, long words. What random bytes almost never hit is hit all the time.
QByteArray tagSoup(QByteArrayView choices);

} // namespace vorle::test
