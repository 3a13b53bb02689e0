#include "core/KindLabel.h"

#include <QCoreApplication>

namespace vorle {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("vorle", text); }

} // namespace

QString kindLabel(ItemKind kind) {
    switch (kind) {
    case ItemKind::Article:
        return tr("Article");
    case ItemKind::Video:
        return tr("Vidéo");
    case ItemKind::Tool:
        return tr("Outil");
    case ItemKind::Package:
        return tr("Paquet");
    case ItemKind::Product:
        return tr("Produit");
    case ItemKind::Discussion:
        return tr("Discussion");
    case ItemKind::Announcement:
        return tr("Annonce");
    case ItemKind::Security:
        return tr("Sécurité");
    }
    return {};
}

} // namespace vorle
