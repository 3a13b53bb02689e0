#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>

/// What the applications on a machine tell of the person who works on it. Pure, any thread.
namespace vorle::discovery {

/// One installed application.
struct App {
    QString name;
    QString location;
    std::optional<QString> category; ///< "public.app-category.games"
    QString icon = {};               ///< as InstalledApps::iconFile() takes it; may be empty

    bool operator==(const App &) const = default;
};

/// The apps in the order they are shown in: by name, as a French reader looks one up. Of several
/// with one name the first given stays.
QList<App> inOrder(QList<App> apps);

/// Their names, in their order.
QStringList namesOf(const QList<App> &apps);

/// Whether an app is for leisure, never proposed as a tool: by its name, else by its category.
bool isLeisureApp(const App &app);

/// The work tools known by name, in the order they are proposed in.
QStringList recognisedTools();

/// The recognised tools among the apps, in that order.
QStringList proposedTools(const QList<App> &apps);

/// The assistants among the recognised tools.
inline constexpr std::array<QStringView, 3> assistants{u"Claude", u"Cursor", u"ChatGPT"};

/// The job that a person's projects and apps point to, in the program's language: from the labels
/// of all projects and the names of all apps.
QString jobTitle(const QStringList &projectLabels, const QStringList &appNames);

/// What of these jobTitle() went by, labels then apps; empty where nothing pointed anywhere.
QStringList jobEvidence(const QStringList &projectLabels, const QStringList &appNames);

/// The jobs a person may choose from, every one that jobTitle() gives among them.
QStringList jobPresets();

} // namespace vorle::discovery
