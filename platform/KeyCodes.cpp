#include "platform/KeyCodes.h"

#include <algorithm>

namespace vorle::keys {

namespace {

struct Place {
    int onLinux;
    int onMac;
    QStringView sign;
};

constexpr Place places[] = {
    {1, 0x35, u"⎋"},   {2, 0x12, {}},     {3, 0x13, {}},      {4, 0x14, {}},      {5, 0x15, {}},
    {6, 0x17, {}},     {7, 0x16, {}},     {8, 0x1A, {}},      {9, 0x1C, {}},      {10, 0x19, {}},
    {11, 0x1D, {}},    {12, 0x1B, {}},    {13, 0x18, {}},     {14, 0x33, u"⌫"},   {15, 0x30, u"⇥"},
    {16, 0x0C, {}},    {17, 0x0D, {}},    {18, 0x0E, {}},     {19, 0x0F, {}},     {20, 0x11, {}},
    {21, 0x10, {}},    {22, 0x20, {}},    {23, 0x22, {}},     {24, 0x1F, {}},     {25, 0x23, {}},
    {26, 0x21, {}},    {27, 0x1E, {}},    {28, 0x24, u"↩"},   {30, 0x00, {}},     {31, 0x01, {}},
    {32, 0x02, {}},    {33, 0x03, {}},    {34, 0x05, {}},     {35, 0x04, {}},     {36, 0x26, {}},
    {37, 0x28, {}},    {38, 0x25, {}},    {39, 0x29, {}},     {40, 0x27, {}},     {41, 0x32, {}},
    {43, 0x2A, {}},    {44, 0x06, {}},    {45, 0x07, {}},     {46, 0x08, {}},     {47, 0x09, {}},
    {48, 0x0B, {}},    {49, 0x2D, {}},    {50, 0x2E, {}},     {51, 0x2B, {}},     {52, 0x2F, {}},
    {53, 0x2C, {}},    {55, 0x43, {}},    {57, 0x31, {}},     {59, 0x7A, u"F1"},  {60, 0x78, u"F2"},
    {61, 0x63, u"F3"}, {62, 0x76, u"F4"}, {63, 0x60, u"F5"},  {64, 0x61, u"F6"},  {65, 0x62, u"F7"},
    {66, 0x64, u"F8"}, {67, 0x65, u"F9"}, {68, 0x6D, u"F10"}, {71, 0x59, {}},     {72, 0x5B, {}},
    {73, 0x5C, {}},    {74, 0x4E, {}},    {75, 0x56, {}},     {76, 0x57, {}},     {77, 0x58, {}},
    {78, 0x45, {}},    {79, 0x53, {}},    {80, 0x54, {}},     {81, 0x55, {}},     {82, 0x52, {}},
    {83, 0x41, {}},    {86, 0x0A, {}},    {87, 0x67, u"F11"}, {88, 0x6F, u"F12"}, {96, 0x4C, u"⌤"},
    {98, 0x4B, {}},    {102, 0x73, u"↖"}, {103, 0x7E, u"↑"},  {104, 0x74, u"⇞"},  {105, 0x7B, u"←"},
    {106, 0x7C, u"→"}, {107, 0x77, u"↘"}, {108, 0x7D, u"↓"},  {109, 0x79, u"⇟"},  {111, 0x75, u"⌦"},
};

} // namespace

int fromLinux(int code) {
    const auto *place = std::ranges::find(places, code, &Place::onLinux);
    return place == std::end(places) ? -1 : place->onMac;
}

int toLinux(int keyCode) {
    const auto *place = std::ranges::find(places, keyCode, &Place::onMac);
    return place == std::end(places) ? -1 : place->onLinux;
}

QString sign(int keyCode) {
    const auto *place = std::ranges::find(places, keyCode, &Place::onMac);
    return place == std::end(places) ? QString() : place->sign.toString();
}

} // namespace vorle::keys
