#include "base/Json.h"

#include <gtest/gtest.h>

#include <limits>

namespace vorle {
namespace {

enum class Colour { Red, DarkBlue };
constexpr std::array<std::string_view, 2> rawStrings(Colour) { return {"red", "dark-blue"}; }

struct Inner {
    QString name;
    double weight = 0;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &Inner::name), json::field("weight", &Inner::weight));
    }
    bool operator==(const Inner &) const = default;
};

struct Outer {
    QUuid id;
    QString zebra;
    std::optional<QString> note;
    Colour colour = Colour::Red;
    int count = 0;
    bool on = false;
    QByteArray body;
    std::optional<QDateTime> at;
    QList<Inner> inners;
    QMap<QString, int> weights;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("id", &Outer::id), json::field("zebra", &Outer::zebra),
                          json::field("note", &Outer::note), json::field("colour", &Outer::colour),
                          json::field("count", &Outer::count), json::field("on", &Outer::on),
                          json::field("body", &Outer::body), json::field("at", &Outer::at),
                          json::field("inners", &Outer::inners),
                          json::field("weights", &Outer::weights));
    }
    bool operator==(const Outer &) const = default;
};

Outer sample() {
    Outer outer;
    outer.id = QUuid::fromString(QStringLiteral("a1b2c3d4-0000-4000-8000-00000000beef"));
    outer.zebra = QStringLiteral("« é \"\\\n\t\u0001 / 😀 »");
    outer.colour = Colour::DarkBlue;
    outer.count = -7;
    outer.on = true;
    outer.body = "l\xC3\xA9ger";
    outer.at = QDateTime(QDate(2026, 11, 21), QTime(8, 0, 5), Qt::UTC);
    outer.inners = {{QStringLiteral("a"), 0.1}, {QStringLiteral("b"), 3}};
    outer.weights = {{QStringLiteral("rust"), 5}, {QStringLiteral("é"), 1}};
    return outer;
}

std::string failureOf(const QByteArray &text) {
    try {
        json::decode<Outer>(text);
    } catch (const json::DecodeError &error) {
        return error.what();
    }
    return "none";
}

TEST(Json, a_record_survives_the_way_out_and_back_in_both_styles) {
    EXPECT_EQ(json::decode<Outer>(json::encode(sample())), sample());
    EXPECT_EQ(json::decode<Outer>(json::encode(sample(), json::Style::Pretty)), sample());
}

TEST(Json, pretty_sorts_the_keys_and_indents_from_the_level_asked_for) {
    EXPECT_EQ(json::encode(QList<Inner>{{QStringLiteral("a"), 2.5}}, json::Style::Pretty, 1),
              "[\n    {\n      \"name\": \"a\",\n      \"weight\": 2.5\n    }\n  ]");
    const QByteArray text = json::encode(sample(), json::Style::Pretty);
    EXPECT_LT(text.indexOf("\"at\""), text.indexOf("\"body\""));
    EXPECT_LT(text.indexOf("\"weights\""), text.indexOf("\"zebra\""));
    EXPECT_TRUE(text.contains("A1B2C3D4-0000-4000-8000-00000000BEEF"));
    EXPECT_FALSE(text.contains("note"));
    EXPECT_EQ(json::encode(QList<Inner>{}, json::Style::Pretty), "[]");
}

TEST(Json, compact_keeps_the_records_own_order) {
    EXPECT_EQ(json::encode(Inner{QStringLiteral("n"), 3}), R"({"name":"n","weight":3})");
}

TEST(Json, absent_and_null_read_alike_and_unknown_keys_are_passed_over) {
    const QByteArray text = R"({"weights":{},"inners":[],"on":false,"count":3.0,"colour":"red",
        "body":"","zebra":"z","later":{"a":[1,{"b":2}]},"note":null,
        "id":"A1B2C3D4-0000-4000-8000-00000000BEEF"})";
    const Outer outer = json::decode<Outer>(text);
    EXPECT_EQ(outer.count, 3);
    EXPECT_FALSE(outer.note);
    EXPECT_FALSE(outer.at);
}

TEST(Json, what_does_not_fit_is_refused_and_names_its_key) {
    const QByteArray good = json::encode(sample());
    const auto with = [&](const char *from, const char *to) {
        QByteArray text = good;
        EXPECT_TRUE(text.contains(from)) << from;
        return text.replace(from, to);
    };
    EXPECT_EQ(failureOf(with(R"("count":-7,)", "")), "missing key count");
    EXPECT_NE(failureOf(with(R"(:-7)", ":7.5")).find("count"), std::string::npos);
    EXPECT_NE(failureOf(with(R"(:-7)", ":1e300")).find("count"), std::string::npos);
    EXPECT_NE(failureOf(with(R"(:-7)", ":4294967296")).find("count"), std::string::npos);
    EXPECT_NE(failureOf(with(R"(:-7)", ":\"7\"")).find("count"), std::string::npos);
    EXPECT_NE(failureOf(with("dark-blue", "mauve")).find("colour"), std::string::npos);
    EXPECT_NE(failureOf(with("2026-11-21T08:00:05Z", "yesterday")).find("at"), std::string::npos);
    EXPECT_NE(failureOf(with("0000-4000", "0000x4000")).find("id"), std::string::npos);
    EXPECT_NE(failureOf(with(R"("weight":0.1)", R"("weight":null)")).find("inners: weight"),
              std::string::npos);
}

TEST(Json, broken_texts_are_refused) {
    for (const char *text :
         {"", " ", "{", "[", "{}x", "{} {}", "[1,]", "nul", "\"a\"",
          "{\"zebra\":", "{\"zebra\":\"\xFF\"}", "\xEF\xBB\xBF", "{\"zebra\" \"z\"}"}) {
        EXPECT_NE(failureOf(text), "none") << text;
    }
    EXPECT_NE(failureOf(QByteArray(100'000, '[')), "none");
    EXPECT_NE(failureOf(json::encode(sample()) + ","), "none");
    const QByteArray whole = json::encode(sample());
    for (qsizetype cut = 0; cut < whole.size(); ++cut) {
        EXPECT_NE(failureOf(whole.first(cut)), "none") << cut;
    }
}

TEST(Json, what_is_written_can_always_be_read_again) {
    Outer outer = sample();
    outer.body = QByteArray("bad \xFF\xC3 bytes\0end", 16);
    outer.zebra = QString(QChar(0xD800)) + QStringLiteral("lone");
    outer.inners = {{QStringLiteral("x"), 1e-7}, {QStringLiteral("y"), 1.0 / 3}};
    const Outer back = json::decode<Outer>(json::encode(outer));
    EXPECT_EQ(back.body, QByteArray("bad \xEF\xBF\xBD\xEF\xBF\xBD bytes\0end", 20));
    EXPECT_EQ(back.inners, outer.inners);
    json::Writer writer(json::Style::Compact);
    writer.number(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(writer.take(), "null");
}

} // namespace
} // namespace vorle
