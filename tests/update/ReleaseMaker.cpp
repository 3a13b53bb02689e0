#include "tests/update/ReleaseMaker.h"

#include <QDir>
#include <QFile>

#include <archive.h>
#include <archive_entry.h>
#include <sodium.h>

#include <memory>
#include <stdexcept>

namespace vorle::test {

ReleaseMaker::ReleaseMaker(Key key)
    : m_public(crypto_sign_PUBLICKEYBYTES, '\0'), m_secret(crypto_sign_SECRETKEYBYTES, '\0') {
    auto *open = reinterpret_cast<uchar *>(m_public.data());
    auto *secret = reinterpret_cast<uchar *>(m_secret.data());
    const QByteArray seed(crypto_sign_SEEDBYTES, 'v'); // known to everybody, and to no real program
    const bool made =
        sodium_init() >= 0 &&
        (key == Key::Fresh
             ? crypto_sign_keypair(open, secret)
             : crypto_sign_seed_keypair(open, secret,
                                        reinterpret_cast<const uchar *>(seed.constData()))) == 0;
    if (!made) {
        throw std::runtime_error("no key");
    }
}

QByteArray ReleaseMaker::sign(const QByteArray &bytes) const {
    QByteArray signature(crypto_sign_BYTES, '\0');
    crypto_sign_detached(reinterpret_cast<uchar *>(signature.data()), nullptr,
                         reinterpret_cast<const uchar *>(bytes.constData()),
                         static_cast<quint64>(bytes.size()),
                         reinterpret_cast<const uchar *>(m_secret.constData()));
    return signature;
}

QByteArray ReleaseMaker::packed(const QList<ArchiveEntry> &entries) {
    QByteArray bytes(1 << 20, '\0');
    for (const ArchiveEntry &entry : entries) {
        bytes.resize(bytes.size() + entry.content.size() + 4096);
    }
    size_t used = 0;
    const std::unique_ptr<archive, int (*)(archive *)> made(archive_write_new(),
                                                            archive_write_free);
    archive_write_set_format_ustar(made.get());
    archive_write_add_filter_gzip(made.get());
    archive_write_set_filter_option(made.get(), "gzip", "compression-level", "1");
    archive_write_open_memory(made.get(), bytes.data(), static_cast<size_t>(bytes.size()), &used);
    for (const ArchiveEntry &entry : entries) {
        const std::unique_ptr<archive_entry, void (*)(archive_entry *)> header(archive_entry_new(),
                                                                               archive_entry_free);
        archive_entry_set_pathname(header.get(), entry.path.constData());
        archive_entry_set_perm(header.get(), entry.runs ? 0755 : 0644);
        archive_entry_set_filetype(header.get(), entry.type == '5'   ? AE_IFDIR
                                                 : entry.type == '2' ? AE_IFLNK
                                                 : entry.type == '3' ? AE_IFCHR
                                                                     : AE_IFREG);
        if (entry.type == '2') {
            archive_entry_set_symlink(header.get(), entry.target.constData());
        } else if (entry.type == '1') {
            archive_entry_set_hardlink(header.get(), entry.target.constData());
        }
        archive_entry_set_size(header.get(), entry.type == '0' ? entry.content.size() : 0);
        archive_write_header(made.get(), header.get());
        if (entry.type == '0') {
            archive_write_data(made.get(), entry.content.constData(),
                               static_cast<size_t>(entry.content.size()));
        }
    }
    archive_write_close(made.get());
    return bytes.first(static_cast<qsizetype>(used));
}

QList<ArchiveEntry> ReleaseMaker::entries(const QByteArray &version, const QByteArray &shell) {
    return {{"version", version + '\n'},
            {"bin/vorle", "#!/bin/sh\nVERSION=" + version + '\n' + shell + '\n', true}};
}

QByteArray ReleaseMaker::item(const QByteArray &version, const QByteArray &address, qint64 length,
                              const QByteArray &signature, const QByteArray &more,
                              const QByteArray &system) {
    return "<item><title>vorle " + version + "</title><sparkle:shortVersionString>" + version +
           "</sparkle:shortVersionString>" + more + "<enclosure url=\"" + address + "\" length=\"" +
           QByteArray::number(length) + "\" type=\"application/octet-stream\" sparkle:os=\"" +
           system + "\" sparkle:edSignature=\"" + signature.toBase64() + "\"/></item>";
}

QByteArray ReleaseMaker::feed(const QByteArray &items) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><rss version=\"2.0\" "
           "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" +
           items + "</channel></rss>";
}

void layInstallation(const QString &folder, const QByteArray &version, const QByteArray &shell) {
    const QString place = folder + QStringLiteral("/versions/") + QString::fromUtf8(version);
    writeProgram(place + QStringLiteral("/bin/vorle"), "VERSION=" + version + '\n' + shell);
    writeFile(place + QStringLiteral("/version"), version + '\n');
    if (!QFile::link(QStringLiteral("versions/") + QString::fromUtf8(version),
                     folder + QStringLiteral("/current")) ||
        !QFile::copy(QStringLiteral(VORLE_BINARIES "/vorle-launcher"),
                     folder + QStringLiteral("/vorle"))) {
        throw std::runtime_error("no installation");
    }
}

} // namespace vorle::test
