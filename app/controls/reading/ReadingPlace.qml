import QtQuick

// What its section and its texts ask of the reading page, which is read when one is first opened.
FocusScope {
    // The keys for long pages; whether it was one of them.
    function takes(key: int): bool {
        return false;
    }
    // Copies what is marked; whether anything was.
    function copies(event: KeyEvent): bool {
        return false;
    }
    // The words that were marked, in one text at a time: the keyboard stays on the page.
    function mark(text: TextEdit) {
    }
}
