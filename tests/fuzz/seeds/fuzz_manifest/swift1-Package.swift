35// swift-tools-version:5.9
import PackageDescription
let package = Package(
    name: "a",
    dependencies: [
        .package(url: "https://example.org/apple/swift-nio.git", from: "2.60.0"),
        .package(url: "https://example.org/vapor/Vapor", .upToNextMajor(from: "4.90.0")),
        .package(name: "Old", url: "https://example.org/x/old-thing/", "1.2.0"..<"2.0.0"),
        // .package(url: "https://example.org/x/gone", from: "1.0.0"),
        .package(url: "https://example.org/x/edge.git", branch: "main"),
        .package(url: "https://example.org/x/fixed.git", exact: "3.1.4"),
        .package(path: "../here"),
    ],
    targets: [.target(name: "a", dependencies: ["swift-nio"])]
)
{"object":{"pins":[{"package":"vapor","repositoryURL":"https://example.org/vapor/vapor.git","state":{"branch":null,"revision":"a","version":"4.92.1"}}]},"version":1}
