#include "platform/linux/DesktopApps.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

class DesktopAppsTest : public testing::Test {
protected:
    void entry(const QString &path, const QByteArray &keys) {
        const QString file = folder.filePath(path);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("# a comment\n[Desktop Entry]\nType=Application\nExec=run %U\n" + keys +
                  "\n[Desktop Action new]\nName=Autre chose\nHidden=true\n");
    }

    /// "Name (category), …" in the order of the names.
    std::string listed() {
        DesktopApps::Setting setting;
        setting.dataDirectories = {folder.filePath(QStringLiteral("user")),
                                   folder.filePath(QStringLiteral("absent")),
                                   folder.filePath(QStringLiteral("system"))};
        setting.desktops = {QStringLiteral("ubuntu"), QStringLiteral("GNOME")};
        setting.programFolders = {folder.filePath(QStringLiteral("bin"))};
        setting.ownPrefixes = {QStringLiteral("vorle."), QStringLiteral("fr.vorle.")};
        QStringList lines;
        for (const InstalledApp &app : DesktopApps(setting).list()) {
            lines += app.name + (app.category ? u' ' + app.category->section(u'.', -1) : QString());
        }
        lines.sort();
        return lines.join(QStringLiteral(", ")).toStdString();
    }

    QTemporaryDir folder;
};

TEST_F(DesktopAppsTest, what_a_person_works_in_is_listed_once) {
    entry(QStringLiteral("system/applications/org.gimp.GIMP.desktop"),
          "Name=GIMP\nName[fr]=  Éditeur\\sGIMP \nName[de]=Bild");
    entry(QStringLiteral("system/applications/text.desktop"),
          "Name=Text\nName[fr]=Texte\nName[fr_FR]=Texte de France\nName[fr_CA]=Autre");
    entry(QStringLiteral("system/applications/kde/app.desktop"), "Name=From the system");
    entry(QStringLiteral("user/applications/kde-app.desktop"), "Name=From the user");
    entry(QStringLiteral("system/applications/hidden-here.desktop"), "Name=Hidden by the user");
    entry(QStringLiteral("user/applications/hidden-here.desktop"), "Name=x\nHidden=true");
    entry(QStringLiteral("system/applications/gnome.desktop"),
          "Name=Here\nOnlyShowIn=Unity;GNOME;");
    EXPECT_EQ(listed(), "From the user, Here, Texte de France, Éditeur GIMP");
}

TEST_F(DesktopAppsTest, what_nobody_works_in_is_left_out) {
    const QByteArray skipped[] = {
        "Name=x\nNoDisplay=true",
        "Name=x\nHidden=true",
        "Name=x\nType=Link",
        "Name=x\nTerminal=true",
        "Name=x\nOnlyShowIn=KDE;",
        "Name=x\nNotShowIn=KDE;GNOME;",
        "Name=x\nTryExec=absent-program",
        "Name=x\nCategories=Settings;Screensaver;",
        "Name=x\nCategories=TrayIcon;",
        "Name=",
        "NoName=x",
        "Name=x\nExec=",
    };
    for (int i = 0; const QByteArray &keys : skipped) {
        entry(QStringLiteral("user/applications/%1.desktop").arg(i++), keys);
    }
    entry(QStringLiteral("user/applications/vorle.desktop"), "Name=vorle");
    entry(QStringLiteral("user/applications/readme.txt"), "Name=x");
    entry(QStringLiteral("user/applications/large.desktop"),
          "Name=x\nComment=" + QByteArray(300'000, 'x'));
    mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("user/applications/p.desktop")))
               .constData(),
           0600);
    QFile::link(folder.filePath(QStringLiteral("user")),
                folder.filePath(QStringLiteral("user/applications/loop")));
    QFile binary(folder.filePath(QStringLiteral("user/applications/binary.desktop")));
    ASSERT_TRUE(binary.open(QIODevice::WriteOnly));
    static constexpr char bytes[] = "\0[Desktop Entry]\n=\xFF\n\\\nName=\\";
    binary.write(QByteArray(bytes, sizeof bytes));
    EXPECT_EQ(listed(), "");

    QDir(folder.path()).mkdir(QStringLiteral("bin"));
    QFile program(folder.filePath(QStringLiteral("bin/absent-program")));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(listed(), "x") << "once its program is there";
}

TEST_F(DesktopAppsTest, leisure_is_told_in_one_vocabulary) {
    const std::pair<const char *, const char *> cases[] = {
        {"Network;FileTransfer;Game;", "games"},
        {"Audio;Music;Player;AudioVideo;", "music"},
        {"GTK;Audio;Player;", "music"},
        {"AudioVideo;Player;Recorder;", "entertainment"},
        {"AudioVideo;TV;", "entertainment"},
        {"Qt;AudioVideo;Video;AudioVideoEditing;Player;", ""},
        {"AudioVideo;Audio;Recorder;", ""},
        {"Game;Development;IDE;", ""},
        {"Graphics;3DGraphics;", ""},
        {"GameTool;", ""},
    };
    for (const auto &[categories, kind] : cases) {
        entry(QStringLiteral("user/applications/a.desktop"),
              QByteArray("Name=A\nCategories=") + categories);
        EXPECT_EQ(listed(), *kind == 0 ? "A" : std::string("A ") + kind) << categories;
    }
}

TEST_F(DesktopAppsTest, an_icon_is_found_by_the_rules_of_its_theme) {
    const auto put = [this](const char *path, const QByteArray &bytes) {
        const QString file = folder.filePath(QString::fromLatin1(path));
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    };
    const QByteArray folders = "Directories=16/apps,48/apps,all/apps,../x\n[16/apps]\nSize=16\n"
                               "[48/apps]\nSize=48\nContext=Applications\n[all/apps]\nSize=64\n"
                               "MinSize=8\nMaxSize=512\nType=Scalable\n[../x]\nSize=64\n";
    put("a/icons/hicolor/index.theme", "[Icon Theme]\n" + folders);
    put("a/icons/Nuit/index.theme", "[Icon Theme]\nInherits=Jour, Nuit\n" + folders);
    put("b/icons/Jour/index.theme", "[Icon Theme]\nInherits=Nuit\n" + folders);
    for (const char *file :
         {"a/icons/hicolor/16/apps/seul.png", "b/icons/hicolor/48/apps/deux.png",
          "a/icons/hicolor/16/apps/deux.png", "a/icons/hicolor/all/apps/deux.svg",
          "a/icons/hicolor/all/apps/trait.svg", "b/icons/Jour/48/apps/deux.png",
          "a/icons/Nuit/16/apps/nuit.png", "b/pixmaps/vieux.png", "a/icons/hicolor/x/loin.png"}) {
        put(file, "x");
    }
    const IconTheme icons(
        {folder.filePath(QStringLiteral("a")), folder.filePath(QStringLiteral("b"))});
    const struct {
        const char *icon;
        const char *theme;
        const char *file;
    } cases[] = {
        {"deux", "", "b/icons/hicolor/48/apps/deux.png"},
        {"deux", "Nuit", "b/icons/Jour/48/apps/deux.png"},
        {"deux.png", "Inconnu", "b/icons/hicolor/48/apps/deux.png"},
        {"seul", "Nuit", "a/icons/hicolor/16/apps/seul.png"},
        {"trait", "", "a/icons/hicolor/all/apps/trait.svg"},
        {"nuit", "Jour", "a/icons/Nuit/16/apps/nuit.png"},
        {"vieux", "Nuit", "b/pixmaps/vieux.png"},
        {"loin", "", ""},
        {"../x/loin", "", ""},
        {"deux", "../hicolor", "b/icons/hicolor/48/apps/deux.png"},
        {"", "", ""},
    };
    for (const auto &[icon, theme, file] : cases) {
        EXPECT_EQ(icons.file(QString::fromLatin1(icon), QString::fromLatin1(theme), 64),
                  *file == 0 ? QString() : folder.filePath(QString::fromLatin1(file)))
            << icon << " in " << theme;
    }
    EXPECT_EQ(icons.file(QStringLiteral("/opt/a.png"), {}, 64), QStringLiteral("/opt/a.png"));
}

} // namespace
} // namespace vorle
