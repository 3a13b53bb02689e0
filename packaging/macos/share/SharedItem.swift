import Foundation

/// One link for the app, as its drop folder holds it: a file of one JSON object, these keys in this
/// order, those without a value left out. `packaging/samples` holds what either side has to write
/// and to read.
struct SharedItem {
    var title: String?
    var url: String
    var note: String?
    var project: String?
    var pageText: String?
    var sharedAt: Date

    /// Of a page's text, what the app keeps.
    static let longestText = 8000

    func json() throws -> Data {
        let date = ISO8601DateFormatter()
        date.formatOptions = [.withInternetDateTime]
        let text = pageText.map { String($0.prefix(SharedItem.longestText)) }
        let fields: [(String, String?)] = [
            ("title", title), ("url", url), ("note", note), ("project", project),
            ("pageText", text), ("sharedAt", date.string(from: sharedAt)),
        ]
        let members = try fields.compactMap { (key, value) -> String? in
            guard let value = value, !value.isEmpty else { return nil }
            return try SharedItem.quoted(key) + ":" + SharedItem.quoted(value)
        }
        return Data(("{" + members.joined(separator: ",") + "}").utf8)
    }

    /// JSON's own quotes: an encoder's objects keep no order.
    static func quoted(_ text: String) throws -> String {
        let encoder = JSONEncoder()
        encoder.outputFormatting = .withoutEscapingSlashes
        return String(decoding: try encoder.encode(text), as: UTF8.self)
    }
}

/// The folder that the app and this extension share.
struct DropFolder {
    let container: URL

    /// Nil where the extension was signed by no team, and so belongs to no group.
    init?() {
        guard let group = Bundle.main.object(forInfoDictionaryKey: "VorleAppGroup") as? String,
              let url = FileManager.default.containerURL(forSecurityApplicationGroupIdentifier: group)
        else { return nil }
        container = url
    }

    /// The names of the watched projects, as the app last wrote them.
    func projects() -> [String] {
        guard let data = try? Data(contentsOf: container.appendingPathComponent("projects.json")),
              let names = try? JSONDecoder().decode([String].self, from: data)
        else { return [] }
        return names
    }

    /// Written under a name that the app passes over, then renamed: it never sees half a file.
    func drop(_ item: SharedItem) throws {
        let folder = container.appendingPathComponent("Inbox", isDirectory: true)
        try FileManager.default.createDirectory(at: folder, withIntermediateDirectories: true)
        let name = UUID().uuidString + ".json"
        let hidden = folder.appendingPathComponent("." + name)
        try item.json().write(to: hidden)
        try FileManager.default.moveItem(at: hidden, to: folder.appendingPathComponent(name))
        DistributedNotificationCenter.default().postNotificationName(
            Notification.Name("fr.vorle.vorle.share.dropped"), object: nil, userInfo: nil,
            deliverImmediately: true)
    }
}
