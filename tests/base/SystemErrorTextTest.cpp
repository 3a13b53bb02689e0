#include "base/SystemErrorText.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace vorle {
namespace {

TEST(SystemErrorText, speaks_french_and_names_the_path) {
    const std::pair<std::system_error, QStringView> cases[] = {
        {{EACCES, std::generic_category(), "/a/b"},
         u"Le système a refusé : l’accès est refusé (/a/b)"},
        {{EACCES, std::system_category(), "open"}, u"Le système a refusé : l’accès est refusé"},
        {{ENOSPC, std::generic_category(), "write"},
         u"Le système a refusé : il n’y a plus de place sur le disque"},
        {{EXDEV, std::generic_category(), "rename"}, u"Le système a refusé : erreur 18"},
    };
    for (const auto &[error, text] : cases) {
        EXPECT_EQ(systemRefusalText(error), text);
    }
    for (const int code : {ENOENT, EROFS, EMFILE, ENFILE, EPERM, EISDIR, ENOTDIR, EIO, ENOMEM,
                           EFBIG, EDQUOT, EILSEQ}) {
        const QString text = systemErrorText({code, std::generic_category()});
        EXPECT_FALSE(text.startsWith(u"erreur ")) << code;
    }
}

} // namespace
} // namespace vorle
