// node feed-peer.mjs FOLDER ROUNDS FILE…: the least time, in milliseconds, that each parser found
// in FOLDER/node_modules takes for each file, and the items it found, once it is warm.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const [folder, rounds, ...files] = process.argv.slice(2);
const require = createRequire(folder + "/");
const Parser = require("rss-parser");
const { XMLParser } = require("fast-xml-parser");

const xml = new XMLParser({ ignoreAttributes: false, processEntities: false });
const itemsOf = (tree) => {
    const lists = [tree?.rss?.channel?.item, tree?.feed?.entry, tree?.["rdf:RDF"]?.item];
    const found = lists.find((list) => list !== undefined) ?? [];
    return Array.isArray(found) ? found.length : 1;
};
const parsers = [
    // One that met a fault goes on as if it had not: a new one each time.
    async (bytes) => (await new Parser().parseString(bytes.toString())).items.length,
    async (bytes) => itemsOf(xml.parse(bytes)),
];

for (const file of files) {
    const bytes = readFileSync(file);
    const figures = [];
    for (const parse of parsers) {
        let least = Infinity;
        let items = -1;
        for (let round = 0; round < Number(rounds); ++round) {
            const start = performance.now();
            items = await parse(bytes).catch(() => -1);
            least = Math.min(least, performance.now() - start);
        }
        figures.push(least, items);
    }
    console.log(figures.join(" "));
}
