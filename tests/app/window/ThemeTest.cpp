#include "core/AccentColour.h"

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

/// The relative luminance and the contrast of WCAG 2.1.
double luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &a, const QColor &b) {
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

TEST(Theme, text_stands_out_from_its_ground_in_both_appearances_and_every_accent) {
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport Vorle\nQtObject { property var theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    auto *theme = holder->property("theme").value<QObject *>();
    const auto token = [&](const char *name) {
        const auto colour = theme->property(name).value<QColor>();
        EXPECT_TRUE(colour.isValid()) << name;
        return colour;
    };
    const std::initializer_list<std::pair<const char *, QList<const char *>>> pairs{
        {"ink",
         {"paper", "side", "card", "raised", "sunken", "hover", "accentTint", "well", "segment"}},
        {"inkSoft",
         {"paper", "side", "card", "raised", "sunken", "hover", "accentTint", "well", "segment"}},
        {"inkFaint", {"paper", "side", "card", "raised", "sunken", "hover", "well", "segment"}},
        {"paper", {"ink"}},
        {"accent", {"paper", "card", "raised"}},
        {"tintInk", {"accentTint", "paper", "side", "card", "raised", "sunken", "hover"}},
        {"accentInk", {"accent", "accentDown"}},
    };
    for (const bool dark : {false, true}) {
        theme->setProperty("dark", dark);
        for (const char *accent : {"Braise", "Framboise", "Lagune", "Indigo"}) {
            theme->setProperty("accentName", QString::fromLatin1(accent));
            for (const auto &[text, grounds] : pairs) {
                for (const char *ground : grounds) {
                    EXPECT_GE(contrast(token(text), token(ground)), 4.5)
                        << text << " on " << ground << ", " << accent
                        << (dark ? ", dark" : ", light");
                }
            }
            // The digits of a score of 9.
            EXPECT_GE(contrast(Qt::white, token("accentStrong")), 4.5) << accent;
        }
    }
}

TEST(Theme, what_is_drawn_outside_the_window_has_its_accents) {
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport Vorle\nQtObject { property var theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    auto *theme = holder->property("theme").value<QObject *>();
    for (const vorle::Accent accent : {vorle::Accent::Braise, vorle::Accent::Framboise,
                                       vorle::Accent::Lagune, vorle::Accent::Indigo}) {
        theme->setProperty("accentName", vorle::json::rawText(accent));
        for (const bool dark : {false, true}) {
            theme->setProperty("dark", dark);
            const vorle::ModeColour drawn = vorle::accentColour(accent);
            EXPECT_EQ(theme->property("accent").value<QColor>(),
                      QColor(dark ? drawn.dark : drawn.light));
        }
    }
}

} // namespace
