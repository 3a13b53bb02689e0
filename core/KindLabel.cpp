#include "core/KindLabel.h"

#include "base/French.h"

namespace vorle {

QString kindLabel(ItemKind kind) {
    switch (kind) {
    case ItemKind::Article:
        return French::tr("Article");
    case ItemKind::Video:
        return French::tr("Vidéo");
    case ItemKind::Tool:
        return French::tr("Outil");
    case ItemKind::Package:
        return French::tr("Paquet");
    case ItemKind::Product:
        return French::tr("Produit");
    case ItemKind::Discussion:
        return French::tr("Discussion");
    case ItemKind::Announcement:
        return French::tr("Annonce");
    case ItemKind::Security:
        return French::tr("Sécurité");
    }
    return {};
}

} // namespace vorle
