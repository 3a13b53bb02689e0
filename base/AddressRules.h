#pragma once

#include <QHostAddress>
#include <QString>

namespace vorle {

/// Where an address leads.
enum class AddressKind {
    Public,   ///< the internet at large
    Loopback, ///< this machine: 127.0.0.0/8, ::1
    Reserved  ///< everything else: private, link-local, carrier, multicast, documentation, …
};

/// Sorts an address by the IANA registries of special-purpose addresses (RFC 6890). An IPv6
/// address that carries an IPv4 one (v4-mapped, NAT64, 6to4) is what the inner one is; an IPv6
/// address outside global unicast (2000::/3) is never public.
AddressKind addressKind(const QHostAddress &address);

/// Whether a host name means this machine or its local network whatever it resolves to:
/// "localhost", names ending in ".localhost" or ".local".
enum class NameKind { Ordinary, Loopback, LocalNetwork };
NameKind nameKind(const QString &host);

} // namespace vorle
