#include "search/discovery/DiscoveryApps.h"

#include "base/French.h"
#include "base/FrenchLocale.h"

#include <QCollator>
#include <QSet>

#include <algorithm>

namespace vorle::discovery {

namespace {

constexpr std::array<QStringView, 9> leisureApps{
    u"Steam",           u"Battle.net", u"World of Warcraft",
    u"Ankama Launcher", u"Spotify",    u"Spotify (old)",
    u"GarageBand",      u"iMovie",     u"Self-Service",
};

constexpr std::array<QStringView, 3> leisureCategories{
    u"public.app-category.games",
    u"public.app-category.music",
    u"public.app-category.entertainment",
};

constexpr std::array<QStringView, 24> tools{
    u"Android Studio", u"Xcode",   u"Cursor", u"Claude",        u"ChatGPT",  u"Ghostty",
    u"iTerm",          u"Warp",    u"Linear", u"Notion",        u"Obsidian", u"Figma",
    u"Sketch",         u"Blender", u"Slack",  u"Bruno",         u"Postman",  u"Docker",
    u"TablePlus",      u"Raycast", u"Arc",    u"Google Chrome", u"Firefox",  u"Pen",
};

constexpr std::array<QStringView, 5> mobileLabels{u"Kotlin", u"Compose", u"Expo", u"React Native",
                                                  u"SwiftUI"};
constexpr std::array<QStringView, 3> webLabels{u"React", u"Next.js", u"TypeScript"};

template <std::size_t N>
bool holds(const std::array<QStringView, N> &words, const QString &word) {
    return std::ranges::find(words, word) != words.end();
}

template <std::size_t N>
bool holdsAny(const std::array<QStringView, N> &words, const QStringList &of) {
    return std::any_of(of.begin(), of.end(),
                       [&](const QString &word) { return holds(words, word); });
}

} // namespace

QList<App> inOrder(QList<App> apps) {
    QSet<QString> names;
    apps.removeIf([&](const App &app) {
        const bool known = names.contains(app.name);
        names.insert(app.name);
        return known;
    });
    QCollator french(frenchLocale());
    french.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(apps.begin(), apps.end(), [&](const App &a, const App &b) {
        return french.compare(a.name, b.name) < 0;
    });
    return apps;
}

QStringList namesOf(const QList<App> &apps) {
    QStringList names;
    for (const App &app : apps) {
        names += app.name;
    }
    return names;
}

bool isLeisureApp(const App &app) {
    return holds(leisureApps, app.name) ||
           (app.category && holds(leisureCategories, *app.category));
}

QStringList recognisedTools() {
    QStringList names;
    for (const QStringView tool : tools) {
        names += tool.toString();
    }
    return names;
}

QStringList proposedTools(const QList<App> &apps) {
    QSet<QString> present;
    for (const App &app : apps) {
        if (!isLeisureApp(app)) {
            present.insert(app.name);
        }
    }
    QStringList proposed = recognisedTools();
    proposed.removeIf([&](const QString &tool) { return !present.contains(tool); });
    return proposed;
}

QString jobTitle(const QStringList &projectLabels, const QStringList &appNames) {
    if (holdsAny(mobileLabels, projectLabels) || appNames.contains(u"Android Studio") ||
        appNames.contains(u"Xcode")) {
        return French::tr("Développeur mobile");
    }
    if (holdsAny(webLabels, projectLabels)) {
        return French::tr("Développeur web");
    }
    if (projectLabels.contains(u"Python")) {
        return French::tr("Développeur Python");
    }
    return appNames.contains(u"Figma") ? French::tr("Designer produit") : French::tr("Développeur");
}

QStringList jobEvidence(const QStringList &projectLabels, const QStringList &appNames) {
    const auto among = [](const QStringList &present, const auto &wanted) {
        QStringList found;
        for (const QStringView one : wanted) {
            if (present.contains(one)) {
                found += one.toString();
            }
        }
        return found;
    };
    const QStringList mobile =
        among(projectLabels, mobileLabels) +
        among(appNames, std::array<QStringView, 2>{u"Xcode", u"Android Studio"});
    const QStringList web = among(projectLabels, webLabels);
    return !mobile.isEmpty() ? mobile
           : !web.isEmpty()  ? web
           : projectLabels.contains(u"Python")
               ? QStringList{QStringLiteral("Python")}
               : among(appNames, std::array<QStringView, 1>{u"Figma"});
}

QStringList jobPresets() {
    return {French::tr("Développeur mobile"), French::tr("Développeur web"),
            French::tr("Développeur Python"), French::tr("Designer produit"),
            French::tr("Développeur"),        French::tr("IA pour le design")};
}

} // namespace vorle::discovery
