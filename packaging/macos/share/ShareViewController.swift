import Cocoa
import UniformTypeIdentifiers

/// "Ajouter à vorle" in the system's share menu: the page's title and address, a note, a project.
@objc(ShareViewController)
final class ShareViewController: NSViewController {
    private let titleLabel = NSTextField(wrappingLabelWithString: "")
    private let note = NSTextField()
    private let project = NSPopUpButton()
    private let add = NSButton()
    private var item = SharedItem(url: "", sharedAt: Date())
    private let folder = DropFolder()

    override func loadView() {
        titleLabel.maximumNumberOfLines = 3
        note.placeholderString = "Une note, si tu veux"
        project.addItem(withTitle: "Aucun projet")
        project.addItems(withTitles: folder?.projects() ?? [])
        add.title = "Ajouter"
        add.bezelStyle = .rounded
        add.keyEquivalent = "\r"
        add.isEnabled = false
        add.target = self
        add.action = #selector(addLink)
        let leave = NSButton(title: "Annuler", target: self, action: #selector(cancel))
        leave.keyEquivalent = "\u{1b}"
        let buttons = NSStackView(views: [leave, add])
        let stack = NSStackView(views: [titleLabel, note, project, buttons])
        stack.orientation = .vertical
        stack.alignment = .leading
        stack.spacing = 12
        stack.edgeInsets = NSEdgeInsets(top: 20, left: 20, bottom: 20, right: 20)
        note.widthAnchor.constraint(equalToConstant: 360).isActive = true
        titleLabel.widthAnchor.constraint(equalToConstant: 360).isActive = true
        view = stack
    }

    override func viewDidLoad() {
        super.viewDidLoad()
        guard folder != nil else {
            titleLabel.stringValue = "vorle n’a pas de dossier partagé sur ce Mac : réinstalle-le."
            return
        }
        let inputs = (extensionContext?.inputItems ?? []).compactMap { $0 as? NSExtensionItem }
        item.title = inputs.compactMap { $0.attributedTitle?.string ?? $0.attributedContentText?.string }.first
        titleLabel.stringValue = "Je cherche le lien…"
        let providers = inputs.flatMap { $0.attachments ?? [] }
        readAddress(providers[...])
    }

    /// The first attachment that is a web address, or a text that is one.
    private func readAddress(_ providers: ArraySlice<NSItemProvider>) {
        guard let provider = providers.first else {
            titleLabel.stringValue = "Il n’y a pas de lien ici."
            return
        }
        let type = provider.hasItemConformingToTypeIdentifier(UTType.url.identifier)
            ? UTType.url.identifier : UTType.plainText.identifier
        guard provider.hasItemConformingToTypeIdentifier(type) else {
            return readAddress(providers.dropFirst())
        }
        provider.loadItem(forTypeIdentifier: type, options: nil) { [weak self] value, _ in
            let text = (value as? URL)?.absoluteString ?? (value as? String)
                ?? (value as? Data).flatMap { String(data: $0, encoding: .utf8) } ?? ""
            DispatchQueue.main.async {
                self?.found(text.trimmingCharacters(in: .whitespacesAndNewlines), then: providers.dropFirst())
            }
        }
    }

    private func found(_ address: String, then others: ArraySlice<NSItemProvider>) {
        guard let url = URL(string: address), ["http", "https"].contains(url.scheme?.lowercased() ?? "") else {
            return readAddress(others)
        }
        item.url = address
        titleLabel.stringValue = item.title ?? address
        add.isEnabled = true
        view.window?.makeFirstResponder(note)
    }

    @objc private func addLink() {
        item.note = note.stringValue
        item.project = project.indexOfSelectedItem > 0 ? project.titleOfSelectedItem : nil
        item.sharedAt = Date()
        do {
            try folder?.drop(item)
            extensionContext?.completeRequest(returningItems: nil)
        } catch {
            titleLabel.stringValue = "Le lien n’a pas pu être gardé. \(error.localizedDescription)"
        }
    }

    @objc private func cancel() {
        extensionContext?.cancelRequest(withError: CocoaError(.userCancelled))
    }
}
