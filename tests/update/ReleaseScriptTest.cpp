// What scripts/release makes is what the program takes.

#include "tests/update/ReleaseMaker.h"
#include "update/Appcast.h"
#include "update/ReleaseArchive.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

/// A tree with all that the script reads, and programs that are none.
class ReleaseScriptTest : public testing::Test {
protected:
    ReleaseScriptTest() {
        QDir().mkpath(path("tree/scripts"));
        QDir().mkpath(path("tree/resources/linux"));
        for (const char *name :
             {"scripts/release", "resources/linux/install.sh", "THIRD-PARTY.md"}) {
            QFile::copy(QStringLiteral(VORLE_SOURCE "/") + QString::fromUtf8(name),
                        path("tree/") + QString::fromUtf8(name));
        }
        openssl({QStringLiteral("genpkey"), QStringLiteral("-algorithm"), QStringLiteral("ed25519"),
                 QStringLiteral("-out"), path("key.pem")});
        QFile::setPermissions(path("key.pem"), QFile::ReadOwner | QFile::WriteOwner);
        tell("1.5.0", "12 décembre 2026");
    }
    QString path(const char *name) const { return root.filePath(QString::fromUtf8(name)); }
    static QByteArray openssl(const QStringList &words) {
        QProcess process;
        process.start(QStringLiteral("openssl"), words);
        process.waitForFinished();
        return process.readAllStandardOutput();
    }
    void tell(const QByteArray &version, const QByteArray &date) {
        test::writeFile(path("tree/CMakeLists.txt"), "project(vorle VERSION " + version + " )\n");
        test::writeFile(path("tree/CHANGELOG.md"),
                        "# Changelog\n\n## " + version + ", " + date +
                            "\n\n- Ton programme se lit même hors ligne.\n"
                            "\n## 1.0.0, hier\n\n- Ancien.\n");
        for (const char *name : {"vorle", "vorle-guard", "vorle-launcher", "vorle-demo-agent"}) {
            test::writeProgram(path("programs/") + QString::fromUtf8(name),
                               "echo vorle " + version);
        }
        writeVorle(version, publicKey().toBase64(), "https://example.org/vorle/appcast.xml");
    }
    QByteArray publicKey() const {
        return openssl({QStringLiteral("pkey"), QStringLiteral("-in"), path("key.pem"),
                        QStringLiteral("-pubout"), QStringLiteral("-outform"),
                        QStringLiteral("DER")})
            .last(32);
    }
    /// A program that says its version, and holds what one that is built holds.
    void writeVorle(const QByteArray &version, const QByteArray &key, const char *feed) {
        const QString text = QString::fromUtf8(feed);
        test::writeProgram(path("programs/vorle"),
                           "echo vorle " + version + "; exit\n" + key +
                               QByteArray(reinterpret_cast<const char *>(text.utf16()),
                                          text.size() * qsizetype(sizeof(char16_t))));
    }
    bool release() {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VORLE_RELEASE_KEY"), path("key.pem"));
        environment.insert(QStringLiteral("PYTHONPATH"), path("python"));
        // Under a locale that writes accents otherwise, or not at all.
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("PYTHONUTF8"), QStringLiteral("0"));
        environment.insert(QStringLiteral("PYTHONCOERCECLOCALE"), QStringLiteral("0"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral("python3"),
                      {path("tree/scripts/release"), QStringLiteral("--url"),
                       QStringLiteral("https://example.org/vorle/"), QStringLiteral("--out"),
                       path("out"), QStringLiteral("--programs"), path("programs")});
        process.waitForFinished();
        said = process.readAllStandardError();
        return process.exitCode() == 0;
    }

    QTemporaryDir root;
    QByteArray said;
};

TEST_F(ReleaseScriptTest, signs_and_lists_what_the_program_takes) {
    ASSERT_TRUE(release()) << said.toStdString();
    tell("1.6.0", "13 décembre 2026");
    ASSERT_TRUE(release()) << said.toStdString();
    const auto releases =
        readAppcast(test::readFile(path("out/appcast.xml")),
                    QUrl(QStringLiteral("https://example.org/vorle/appcast.xml")));
    ASSERT_EQ(releases.size(), 2);
    const auto newest = newestRelease(releases, Machine::ofThisProcess(), QStringLiteral("1.4.0"));
    ASSERT_TRUE(newest) << "it suits the machine that it was made on";
    EXPECT_EQ(newest->version, QStringLiteral("1.6.0"));
    EXPECT_EQ(newest->notes, QStringLiteral("- Ton programme se lit même hors ligne."));
    const QString archive = path("out/") + newest->archive.fileName();
    EXPECT_EQ(QFileInfo(archive).size(), newest->bytes);
    EXPECT_TRUE(isSignedBy(publicKey(), newest->signature, archive));
    unpackRelease(archive, path("tree2"));
    EXPECT_EQ(test::readFile(path("tree2/version")), "1.6.0\n");
    EXPECT_TRUE(QFileInfo(path("tree2/bin/vorle-guard")).isExecutable());

    // On another machine; the system calls its processor otherwise than Qt does.
    test::writeFile(path("python/sitecustomize.py"),
                    "import platform\nplatform.machine = lambda: 'aarch64'\n");
    ASSERT_TRUE(release()) << said.toStdString();
    const auto both = readAppcast(test::readFile(path("out/appcast.xml")), newest->archive);
    Machine other = Machine::ofThisProcess();
    other.architecture = QStringLiteral("arm64");
    EXPECT_EQ(both.size(), 3);
    EXPECT_TRUE(newestRelease(both, other, QStringLiteral("1.5.0")));

    // And its own script installs it, once.
    QProcess installing;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), path("home"));
    installing.setProcessEnvironment(environment);
    for (const int status : {0, 1}) {
        installing.start(path("tree2/install"), QStringList());
        installing.waitForFinished();
        EXPECT_EQ(installing.exitCode(), status) << installing.readAllStandardError().toStdString();
    }
    QFile::remove(path("home/.local/lib/vorle/current/bin/vorle")); // half of one mends
    installing.start(path("tree2/install"), QStringList());
    installing.waitForFinished();
    EXPECT_EQ(installing.exitCode(), 0) << installing.readAllStandardError().toStdString();
    EXPECT_EQ(QFileInfo(path("home/.local/bin/vorle")).symLinkTarget(),
              path("home/.local/lib/vorle/vorle"));
    EXPECT_EQ(
        QFileInfo(path("home/.local/lib/vorle/current/bin/vorle")).canonicalFilePath(),
        QFileInfo(path("home/.local/lib/vorle/versions/1.6.0/bin/vorle")).canonicalFilePath());
    // Into a folder named from where one stands.
    ASSERT_TRUE(QDir().mkpath(path("home/ici")));
    installing.setWorkingDirectory(path("home/ici"));
    installing.start(path("tree2/install"), {QStringLiteral("à côté/vorle")});
    installing.waitForFinished();
    EXPECT_EQ(installing.exitCode(), 0) << installing.readAllStandardError().toStdString();
    EXPECT_EQ(QFileInfo(path("home/.local/bin/vorle")).canonicalFilePath(),
              QFileInfo(path("home/ici/à côté/vorle/vorle")).canonicalFilePath());
}

TEST_F(ReleaseScriptTest, refuses_what_should_not_be_released) {
    tell("1.5.0", "unreleased");
    EXPECT_FALSE(release());
    tell("1.5.0", "12 décembre 2026");
    const char *feed = "https://example.org/vorle/appcast.xml";
    writeVorle("1.4.0", publicKey().toBase64(), feed);
    EXPECT_FALSE(release()) << "another version than the tree's";
    writeVorle("1.5.0", QByteArray(32, 'k').toBase64(), feed);
    EXPECT_FALSE(release()) << "whoever has it takes no later version";
    writeVorle("1.5.0", publicKey().toBase64(), "https://example.org/essai/appcast.xml");
    EXPECT_FALSE(release()) << "nor where it looks elsewhere";
    tell("1.5.0", "12 décembre 2026");
    ASSERT_TRUE(release()) << said.toStdString();
    const QString out =
        path("out/") + QDir(path("out")).entryList({QStringLiteral("*.xz")}).value(0);
    const QByteArray archive = test::readFile(out);
    test::writeProgram(path("programs/vorle-guard"), "echo other");
    EXPECT_FALSE(release()) << "released once already";
    EXPECT_EQ(test::readFile(out), archive) << "as it was signed";
    tell("1.6.0", "13 décembre 2026");
    const QByteArray list = test::readFile(path("out/appcast.xml"));
    const QByteArray touched[] = {"<!-- mine -->\n" + list, QByteArray(list).replace('\n', "\r\n"),
                                  list.chopped(4), "<rss/>"};
    for (const QByteArray &each : touched) {
        test::writeFile(path("out/appcast.xml"), each);
        EXPECT_FALSE(release()) << "a feed that something else wrote to";
        EXPECT_EQ(test::readFile(path("out/appcast.xml")), each);
    }
    test::writeFile(path("out/appcast.xml"), list);
    QFile::setPermissions(path("key.pem"), QFile::ReadOwner | QFile::ReadOther);
    tell("1.6.0", "12 décembre 2026");
    EXPECT_FALSE(release()) << "a key that others may read";
}

} // namespace
} // namespace vorle
