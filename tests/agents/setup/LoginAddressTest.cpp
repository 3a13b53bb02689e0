#include "agents/setup/LoginAddress.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(LoginAddress, is_the_first_https_address_wherever_the_pieces_part_it) {
    const QByteArray page = "https://auth.example.com/authorize?a=1&b=%20";
    const QByteArray none;
    const struct {
        QByteArrayList pieces;
        QByteArray address;
    } cases[] = {
        {{"Go to " + page + "\n"}, page},
        {{page + "\x1B[0m and on"}, page},                    // a colour
        {{"\x1B]8;;" + page + "\x07here\x1B]8;;\x07"}, page}, // a terminal's link
        {{page + "\xE2\x80\xAFnext"}, page},                  // a narrow no-break space
        {{"http", "s:/", "/auth.example.com/authorize", "?a=1&b=%20", " "}, page},
        {{"\xE2", "\x80", "\x99 " + page + " "}, page}, // inside a character
        {{"http://localhost:1455\n" + page + "\n https://other.example \n"}, page},
        {{"https:// " + page + "\n"}, page},
        {{page}, page},                         // to the end of the output
        {{page, none, none, none, none}, page}, // and while it stays silent
        {{QByteArray("https://") + QByteArray(20'000, 'a'), " " + page + " "}, page},
        {{"nothing", "http://plain.example/ ", "https://"}, {}},
    };
    for (const auto &one : cases) {
        LoginAddress address;
        QStringList found;
        for (const QByteArray &piece : one.pieces) {
            if (const auto here = address.feed(piece)) {
                found += *here;
            }
        }
        if (const auto here = address.finish()) {
            found += *here;
        }
        EXPECT_EQ(found.join(u'|'), QString::fromUtf8(one.address))
            << one.pieces.join().toStdString();
    }
    // An address that goes on after a piece is not cut there.
    LoginAddress parted;
    EXPECT_FALSE(parted.feed("https://auth.example.com/auth"));
    EXPECT_FALSE(parted.feed({}));
    EXPECT_EQ(parted.feed("orize\n"), QStringLiteral("https://auth.example.com/authorize"));
}

} // namespace
} // namespace vorle
