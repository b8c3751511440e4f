// What the worker does before anything is drawn, without a browser.

import assert from "node:assert/strict";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { constants, deflateRawSync, gzipSync } from "node:zlib";
import { build } from "esbuild";
import { scratch } from "./lib.mjs";

const source = (name) => fileURLToPath(new URL(`../src/${name}.ts`, import.meta.url));
await build({
  stdin: {
    contents: ["step", "columns", "sections", "unpack"].map((name) => `export * from ${JSON.stringify(source(name))};`).join("\n"),
    resolveDir: scratch,
  },
  bundle: true,
  format: "esm",
  outfile: join(scratch, "reader.mjs"),
});
const { StepFile, readColumns, findSections, excerpt, unpack, fromBase64, mostBytes } = await import(pathToFileURL(join(scratch, "reader.mjs")).href);

const ignore = () => undefined;
const bytesOf = (text) => new Uint8Array(Buffer.from(text, "latin1"));
const stepFile = (...lines) => new StepFile(bytesOf(["ISO-10303-21;", "DATA;", ...lines, "ENDSEC;", "END-ISO-10303-21;", ""].join("\r\n")), ignore);
const numberIn = (written) => {
  const file = stepFile(`#1= IFCX(${written});`);
  file.take(1);
  return file.number(0);
};

/** A bar of the exporter: its lines are numbered from `first`; the profile is its first line. */
function bar(first, { profile = "IFCRECTANGLEPROFILEDEF(.AREA., 'R', $, 1.,2.)", name = "R", section = "R 1 2", depth = "3000.00000", parent = "$" } = {}) {
  const at = (i) => `#${first + i}`;
  return [
    `${at(0)}= ${profile};`,
    `${at(1)}= IFCCARTESIANPOINT((0.00000, 1.00000, 2.00000));`,
    `${at(2)}= IFCAXIS2PLACEMENT3D(${at(1)}, $, $);`,
    `${at(3)}= IFCLOCALPLACEMENT(${parent}, ${at(2)});`,
    `${at(4)}= IFCDIRECTION((0., 0., 1.));`,
    `${at(5)}= IFCEXTRUDEDAREASOLID(${at(0)}, $, ${at(4)}, ${depth});`,
    `${at(6)}= IFCSHAPEREPRESENTATION($, 'Body', 'SweptSolid', (${at(5)}));`,
    `${at(7)}= IFCPRODUCTDEFINITIONSHAPE($, $, (${at(6)}));`,
    `${at(8)}= IFCBEAM('0000000000000000000000', $, '${name}', '${section}', $,${at(3)}, ${at(7)}, '');`,
  ];
}

function sectionsOf(...bars) {
  const file = stepFile(...bars.flat());
  const { columns, bars: solids } = readColumns(file, ignore);
  return [...findSections(file, columns, solids).of];
}

export async function testReader(check) {
  await check("numbers are read as the language reads them", () => {
    let seed = 1;
    const digits = (count) => Array.from({ length: count }, () => (seed = (seed * 48271) % 2147483647) % 10).join("");
    for (let i = 0; i < 2000; i++) {
      const written = `${i % 3 ? "" : "-"}${digits(1 + (i % 9))}.${digits(i % 13)}${i % 7 ? "" : `E-${i % 30}`}`;
      assert.equal(numberIn(written), Number(written) || 0, written);
    }
    assert.equal(numberIn("."), 0);
    assert.equal(numberIn("$"), 0);
  });
  await check("attributes are taken apart outside of strings and parentheses", () => {
    const file = stepFile("#1= IFCX('a, ''b'' (c', (#2, #3), $, IFCIDENTIFIER('x, y'),#4);", "#2= IFCX('torn, #3, (#5, 'x', 7);", "#3= IFCX()");
    assert.equal(file.take(1), 5);
    assert.equal(file.text(0), "a, 'b' (c");
    assert.equal(file.text(3), "x, y");
    assert.equal(file.reference(4), 4);
    const members = [];
    assert.equal(file.eachReference(1, (number) => members.push(number)), 2);
    assert.deepEqual(members, [2, 3]);
    assert.equal(file.reference(5), 0);
    assert.ok(file.take(2) > 0); // whatever it gives, it ends in its own line
    assert.equal(file.take(4), 0);
  });
  await check("an entity number far beyond the file's length is found and costs no memory", () => {
    const file = stepFile("#4000000000= IFCX(#4000000001);", "#4000000001= IFCX('there');");
    file.take(4000000000);
    file.take(file.reference(0));
    assert.equal(file.text(0), "there");
  });
  await check("a file that ends early is read up to its last whole line", () => {
    const file = new StepFile(bytesOf("ISO-10303-21;\r\nDATA;\r\n#1= IFCX('a');\r\n#2= IFCX('b"), ignore);
    assert.equal(file.complete, false);
    assert.equal(file.take(1), 1);
    assert.equal(file.take(2), 0);
  });

  await check("bars are of one section when their profiles say the same", () => {
    const wide = { profile: "IFCRECTANGLEPROFILEDEF(.AREA., 'R', $, 1.,3.)" };
    assert.deepEqual(sectionsOf(bar(10), bar(20, { depth: "1." }), bar(30, { name: "S", section: "other" })), [0, 0, 0]);
    assert.deepEqual(sectionsOf(bar(10), bar(20, wide), bar(30), bar(40, wide)), [0, 1, 0, 1]);
  });
  await check("what a profile refers to counts, and its number does not", () => {
    const outline = (first, x) => [`#${first}= IFCCARTESIANPOINT((${x}, 0.));`, `#${first + 1}= IFCPOLYLINE((#${first}, #${first}));`];
    const profile = (line, name = "#1") => ({ profile: `IFCARBITRARYCLOSEDPROFILEDEF(.AREA., '${name}', #${line})` });
    const file = [outline(100, "1."), outline(200, "1."), outline(300, "2.")];
    assert.deepEqual(sectionsOf(...file, bar(10, profile(101)), bar(20, profile(201)), bar(30, profile(301))), [0, 0, 1]);
    assert.deepEqual(sectionsOf(...file, bar(10, profile(101, "#101")), bar(20, profile(201, "#201"))), [0, 1]); // a name is no reference
  });
  await check("a bar without profile, without length or of another kind is of no section", () => {
    const lost = bar(30).with(0, "");
    assert.deepEqual(sectionsOf(bar(10).with(5, "#15= IFCEXTRUDEDAREASOLIDTAPERED(#10, $, #14, 3000., #10);")), [-1]);
    assert.deepEqual(sectionsOf(bar(10).with(4, "#14= IFCDIRECTION((0., 1., 1.));")), [-1]);
    assert.deepEqual(sectionsOf(bar(10), bar(20, { depth: "0." }), bar(40).with(5, "#45= IFCFACETEDBREP(#40);")), [0, -1, -1]);
    assert.deepEqual(sectionsOf(bar(10), lost), [0, 1]); // the engine says that it is none
  });
  await check("references in a ring come to an end", () => {
    const ring = Array.from({ length: 30 }, (_, i) => `#${100 + i}= IFCX(${Array.from({ length: 30 }, (_, k) => `#${100 + k}`)});`);
    const placements = ["#200= IFCLOCALPLACEMENT(#201, $);", "#201= IFCLOCALPLACEMENT(#200, $);"];
    const options = (i) => ({ profile: `IFCARBITRARYCLOSEDPROFILEDEF(.AREA., 'x', #${100 + i})`, parent: "#200" });
    const bars = [bar(10, options(0)), bar(20, options(1))];
    assert.equal(sectionsOf(ring, placements, ...bars).length, 2);
    assert.ok(excerpt(stepFile(...ring, ...placements, ...bars.flat()), [18]).length > 1000);
  });
  await check("an excerpt holds what its bars refer to, the project, and nothing else", () => {
    const file = stepFile("#1= IFCPROJECT('p', $, $, $, $, $, $, $, #2);", "#2= IFCUNITASSIGNMENT(());", ...bar(10), ...bar(20));
    const text = Buffer.from(excerpt(file, [18])).toString("latin1");
    assert.deepEqual([...text.matchAll(/^#(\d+)=/gm)].map(([, number]) => Number(number)), [1, 2, 10, 11, 12, 13, 14, 15, 16, 17, 18]);
    assert.match(text, /^ISO-10303-21;\r\nDATA;\r\n/);
    assert.match(text, /ENDSEC;\s+END-ISO-10303-21;\s+$/);
  });

  const content = bytesOf("ISO-10303-21;\r\n".repeat(5000));
  const packed = new Uint8Array(gzipSync(content));
  const refused = (bytes, reason) => assert.rejects(unpack(bytes, ignore), (fault) => fault.reason === reason);
  await check("base 64 is read in one piece and in lines", () => {
    for (const length of [0, 1, 2, 3, 100]) {
      const text = Buffer.from(content.subarray(0, length)).toString("base64");
      for (const written of [text, text.replace(/.{7}/g, "$&\r\n")]) assert.deepEqual(fromBase64(written), content.slice(0, length));
    }
  });
  await check("a file is taken as it is and packed", async () => {
    assert.deepEqual(await unpack(content, ignore), content);
    const told = [];
    assert.deepEqual(await unpack(packed, (done) => told.push(done)), content);
    assert.equal(told.at(-1), 1);
  });
  await check("packed data that ends early, is changed or goes on is refused", async () => {
    for (const length of [2, 17, 18, packed.length - 9, packed.length - 1]) await refused(packed.slice(0, length), "damaged");
    for (const at of [3, 12, packed.length >> 1, packed.length - 6]) await refused(packed.map((byte, i) => (i === at ? byte ^ 0x55 : byte)), "damaged");
    await refused(new Uint8Array([...packed, ...packed]), "damaged");
  });
  const claiming = (bytes, size) => {
    const changed = bytes.slice();
    new DataView(changed.buffer).setUint32(changed.length - 4, size, true);
    return changed;
  };
  await check("packed data that is larger than it says, or could be, is refused before it fills the memory", async () => {
    await refused(claiming(packed, content.length - 1), "damaged");
    await refused(claiming(packed, content.length + 1), "damaged");
    await refused(claiming(packed, 100_000_000), "damaged");
    await refused(claiming(packed.slice(0, -9), mostBytes - 1), "damaged");
    const endless = new Uint8Array(gzipSync(new Uint8Array(50_000_000)));
    const before = process.memoryUsage().arrayBuffers;
    await refused(claiming(endless, 1000), "damaged");
    assert.ok(process.memoryUsage().arrayBuffers - before < 20_000_000);
  });
  await check("a file that is too large is refused, and what only says that it is one is damaged", async () => {
    const zeros = deflateRawSync(new Uint8Array(2 ** 24), { finishFlush: constants.Z_FULL_FLUSH });
    const parts = Array.from({ length: mostBytes / 2 ** 24 + 1 }, () => zeros);
    const large = new Uint8Array(Buffer.concat([packed.subarray(0, 10), ...parts, new Uint8Array(8)]));
    await refused(claiming(large, mostBytes + 2 ** 24), "tooLarge");
    await refused(claiming(large.slice(0, large.length / 2), mostBytes + 2 ** 24), "damaged");
  });
}
