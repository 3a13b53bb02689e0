#include "base/AddressRules.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>

namespace vorle {

namespace {

struct Block4 {
    quint32 address;
    int bits;
};

constexpr quint32 ip(quint32 a, quint32 b, quint32 c, quint32 d) {
    return a << 24 | b << 16 | c << 8 | d;
}

constexpr std::array reserved4{
    Block4{ip(0, 0, 0, 0), 8},       // "this network"
    Block4{ip(10, 0, 0, 0), 8},      // private
    Block4{ip(100, 64, 0, 0), 10},   // carrier-grade NAT
    Block4{ip(169, 254, 0, 0), 16},  // link-local, cloud metadata
    Block4{ip(172, 16, 0, 0), 12},   // private
    Block4{ip(192, 0, 0, 0), 24},    // protocol assignments
    Block4{ip(192, 0, 2, 0), 24},    // documentation
    Block4{ip(192, 88, 99, 0), 24},  // 6to4 relays, withdrawn
    Block4{ip(192, 168, 0, 0), 16},  // private
    Block4{ip(198, 18, 0, 0), 15},   // benchmarking
    Block4{ip(198, 51, 100, 0), 24}, // documentation
    Block4{ip(203, 0, 113, 0), 24},  // documentation
    Block4{ip(224, 0, 0, 0), 4},     // multicast
    Block4{ip(240, 0, 0, 0), 4},     // reserved, broadcast
};

bool within(quint32 address, const Block4 &block) {
    return (address ^ block.address) >> (32 - block.bits) == 0;
}

AddressKind kind4(quint32 address) {
    if (within(address, {ip(127, 0, 0, 0), 8})) {
        return AddressKind::Loopback;
    }
    const bool reserved = std::any_of(reserved4.begin(), reserved4.end(),
                                      [&](const Block4 &block) { return within(address, block); });
    return reserved ? AddressKind::Reserved : AddressKind::Public;
}

bool startsWith(const Q_IPV6ADDR &address, std::span<const quint8> prefix) {
    return std::memcmp(address.c, prefix.data(), prefix.size()) == 0;
}

quint32 innerAddress(const Q_IPV6ADDR &address, int offset) {
    return ip(address[offset], address[offset + 1], address[offset + 2], address[offset + 3]);
}

constexpr std::array<quint8, 12> v4Mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
constexpr std::array<quint8, 12> nat64{0x00, 0x64, 0xFF, 0x9B};
constexpr std::array<quint8, 2> sixToFour{0x20, 0x02};
constexpr std::array<quint8, 16> loopback6{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
constexpr std::array<quint8, 4> documentation6{0x20, 0x01, 0x0D, 0xB8};

AddressKind kind6(const Q_IPV6ADDR &address) {
    if (startsWith(address, loopback6)) {
        return AddressKind::Loopback;
    }
    if (startsWith(address, v4Mapped) || startsWith(address, nat64)) {
        return kind4(innerAddress(address, 12));
    }
    if (startsWith(address, sixToFour)) {
        return kind4(innerAddress(address, 2));
    }
    const bool globalUnicast = address[0] >> 5 == 1;                // 2000::/3
    const bool protocols = address[0] == 0x20 && address[1] == 1 && // 2001::/23, Teredo among them
                           address[2] < 2;
    const bool documentation = startsWith(address, documentation6) ||
                               (address[0] == 0x3F && address[1] == 0xFF && address[2] < 0x10);
    return globalUnicast && !protocols && !documentation ? AddressKind::Public
                                                         : AddressKind::Reserved;
}

} // namespace

AddressKind addressKind(const QHostAddress &address) {
    switch (address.protocol()) {
    case QAbstractSocket::IPv4Protocol:
        return kind4(address.toIPv4Address());
    case QAbstractSocket::IPv6Protocol:
        return kind6(address.toIPv6Address());
    default:
        return AddressKind::Reserved;
    }
}

NameKind nameKind(const QString &host) {
    QString name = host.toLower();
    while (name.endsWith(u'.')) {
        name.chop(1);
    }
    if (name == u"localhost" || name.endsWith(u".localhost")) {
        return NameKind::Loopback;
    }
    return name.endsWith(u".local") ? NameKind::LocalNetwork : NameKind::Ordinary;
}

} // namespace vorle
