#include "tests/support/HostileNames.h"

#include <QChar>

namespace vorle::test {

QStringList strainingNames() {
    const QString written = QStringLiteral(
        "$(pwned)¦`pwned`¦${IFS}pwned¦$PATH¦a;pwned;b¦a&pwned&b¦a|pwned¦a||pwned¦"
        "a && pwned¦a\npwned\nb¦\npwned¦pwned\n¦a\r\npwned¦'; pwned; '¦'$(pwned)'¦"
        "''pwned''¦'\\''pwned¦\"; pwned; \"¦\"$(pwned)\"¦\\'; pwned #¦a # pwned¦<(pwned)¦"
        ">(pwned)¦=(pwned)¦=pwned¦a<<EOF¦EOF\npwned¦!!¦!pwned¦{a,b}¦a*¦[a-z]¦~¦~root¦-¦"
        "--¦-rf¦-P¦--help¦+1¦$'\\x41'¦$((1+1))¦$[pwned]¦%1¦%s%n¦a:b¦ ¦  a  ¦\t¦...¦a\\¦"
        "\\¦\\n¦\033]0;pwned\a¦\033[31m¦\u009b31m¦été¦e\u0301te\u0301¦项目 日本¦"
        "\u202eexe.txt¦a\u00a0b¦a\u2028pwned¦👩‍💻 \U000E0041¦« l’été »¦REM' OR "
        "'1'='1¦"
        "con.txt.");
    return written.split(u'¦') + QStringList{QString(255, u'\''), QString(127, u'é'),
                                             QString(255, u'$'), QString(255, u' '),
                                             QStringLiteral("it's/$(pwned) '\"/").repeated(150)};
}

QStringList hostileNames() {
    QStringList names = strainingNames();
    for (char16_t c = 1; c < 128; ++c) {
        if (c != u'/' && !QChar(c).isLetterOrNumber()) {
            names += u'a' + QString(QChar(c)) + u'b';
        }
    }
    for (const QChar c : QStringLiteral("!\"#$%&'()*+,-.:;<=>?@[\\]^_`{|}~ \n")) {
        names += {c + QStringLiteral("pwned") + c, u'a' + QString(2, c) + QStringLiteral("pwned")};
    }
    return names;
}

} // namespace vorle::test
