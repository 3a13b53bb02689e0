// node scripts/read-swift.mjs MODULES FILE…: whether Swift files are written as Swift is, by a grammar that
// MODULES (a node_modules folder) holds. For scripts/check-mac, where no Swift compiler is to be had: it
// knows no type and no name. Prints FILE:LINE: what it could not read.
import fs from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";

const [modules, ...files] = process.argv.slice(2);
const Parser = createRequire(path.join(modules, "x.js"))("web-tree-sitter");
await Parser.init();
const parser = new Parser();
parser.setLanguage(await Parser.Language.load(path.join(modules, "tree-sitter-wasms/out/tree-sitter-swift.wasm")));

let faults = 0;
function walk(node, file) {
    if (node.isError || node.isMissing) {
        ++faults;
        const text = node.isMissing ? `${node.type} is missing` : node.text.split("\n")[0].slice(0, 60);
        console.log(`${file}:${node.startPosition.row + 1}: no Swift: ${text}`);
    } else if (node.hasError) {
        node.children.forEach((child) => walk(child, file));
    }
}
for (const file of files) walk(parser.parse(fs.readFileSync(file, "utf8")).rootNode, file);
process.exit(faults ? 1 : 0);
