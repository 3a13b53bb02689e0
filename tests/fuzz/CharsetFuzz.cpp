#include "search/web/Charset.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <array>

// The first byte chooses a content type. Whatever the bytes are and whatever is declared, they read
// as valid UTF-8 without NULs, or as no text; what is UTF-8 beyond ASCII stays what it is.
using vorle::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static constexpr std::array<QByteArrayView, 10> types{"",
                                                          "text/html; charset=utf-8",
                                                          "text/html; charset=iso-8859-1",
                                                          "text/html; charset=shift_jis",
                                                          "text/html; charset=utf-16",
                                                          "text/html; charset=utf-32be",
                                                          "text/html; charset=iso-2022-jp",
                                                          "text/html; charset=gb18030",
                                                          "text/html; charset=utf-7",
                                                          "charset=charset==\"'"};
    if (size == 0) {
        return 0;
    }
    const QByteArrayView bytes(data + 1, static_cast<qsizetype>(size - 1));
    const auto text = vorle::decodeText(bytes, types[data[0] % types.size()]);
    if (text) {
        require(QByteArrayView(*text).isValidUtf8(), "not UTF-8", bytes);
        require(!text->contains('\0'), "a NUL", bytes);
    }
    const bool foreign = std::any_of(bytes.begin(), bytes.end(),
                                     [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (foreign && bytes.isValidUtf8() && !bytes.contains('\0') && !bytes.contains('\x1B') &&
        !bytes.startsWith("\xEF\xBB\xBF")) {
        require(text && *text == bytes, "UTF-8 was read as something else", bytes);
    }
    return 0;
}
