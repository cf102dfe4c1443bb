// Compares the documents that an HTML parser builds from pages before and after their repair.
//
//   node judge.js --driver PROGRAM --work FOLDER [--soup COUNT] [--seed N] [FOLDER...]
//
// Every page of each FOLDER and COUNT generated pages are copied to the work folder, repaired there by the driver and
// judged: equal, excused (different, and a message of number 3019 says that it could not be helped), different, or
// unstable (the second repair found something to repair). Prints the shares; fails for the last two.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { parse } from 'parse5';

import { generatedPage } from './soup.js';

const EXCUSE = 3019;
const FORMATTING = new Set(
  ['a', 'b', 'big', 'code', 'em', 'font', 'i', 'nobr', 's', 'small', 'strike', 'strong', 'tt', 'u']);
const BLANK_END = /[\t\n\f\r ]+$/;

// White space at the very end of a page does not count, nor do formatting elements there that hold nothing else. The end
// of a page is the end of its body: what follows it in the file is comments only.
function trimEnd(node) {
  const children = (node.content ?? node).childNodes ?? [];
  let end = children.length;
  if (node.nodeName === '#document' || node.nodeName === 'html')
    while (end > 0 && children[end - 1].nodeName === '#comment') --end;
  for (; end > 0; --end) {
    const last = children[end - 1];
    if (last.nodeName === '#text') {
      last.value = last.value.replace(BLANK_END, '');
      if (last.value !== '') return;
    } else {
      trimEnd(last);
      if (!FORMATTING.has(last.nodeName) || last.childNodes.length > 0) return;
    }
    children.splice(end - 1, 1);
  }
}

function describe(node, depth, lines) {
  const indent = ' '.repeat(depth);
  switch (node.nodeName) {
    case '#text':
      lines.push(`${indent}"${node.value}"`);
      return;
    case '#comment':
      lines.push(`${indent}<!--${node.data}-->`);
      return;
    case '#documentType':
      lines.push(`${indent}<!DOCTYPE ${node.name} ${node.publicId} ${node.systemId}>`);
      return;
    default: {
      const attributes = (node.attrs ?? []).map((a) => `${a.name}=${JSON.stringify(a.value)}`).sort().join(' ');
      lines.push(`${indent}<${node.namespaceURI ?? ''} ${node.nodeName} ${attributes}>`);
      if (node.content) describe(node.content, depth + 1, lines);
    }
  }
}

// Without recursion: generated pages are deep.
function outline(text) {
  const document = parse(text, { scriptingEnabled: false });
  trimEnd(document);
  const lines = [];
  const todo = [[document, 0]];
  while (todo.length > 0) {
    const [node, depth] = todo.pop();
    describe({ ...node, content: undefined }, depth, lines);
    const children = [...(node.content?.childNodes ?? []), ...(node.childNodes ?? [])];
    for (let i = children.length - 1; i >= 0; --i) todo.push([children[i], depth + 1]);
  }
  return lines;
}

function firstDifference(a, b) {
  let i = 0;
  while (i < a.length && a[i] === b[i]) ++i;
  return `before: ${a.slice(Math.max(0, i - 3), i + 4).join(' | ')}\n   after:  ${b.slice(Math.max(0, i - 3), i + 4).join(' | ')}`;
}

const { values, positionals } = parseArgs({
  allowPositionals: true,
  options: {
    driver: { type: 'string' },
    work: { type: 'string' },
    soup: { type: 'string', default: '0' },
    seed: { type: 'string', default: '1' },
    show: { type: 'string', default: '10' },
  },
});

// Bytes as characters, whatever the encoding: tags are ASCII in all of them. A UTF-8 mark is no text.
function decode(bytes) {
  return bytes.toString('latin1').replace(/^\xEF\xBB\xBF/, '');
}

let failed = false;
let shown = 0;

function judge(title, pages) {
  const folder = path.join(values.work, 'pages');
  fs.rmSync(folder, { recursive: true, force: true });
  fs.mkdirSync(folder, { recursive: true });
  for (const [name, bytes] of pages) fs.writeFileSync(path.join(folder, name), bytes);
  const report = execFileSync(values.driver, [folder], { maxBuffer: 1 << 30, encoding: 'utf8' });
  const count = { equal: 0, excused: 0, different: 0, unstable: 0, refused: 0 };
  let repaired = 0;
  let leftAlone = 0;
  for (const line of report.trimEnd().split('\n')) {
    const [name, result, repairs, again, numbers] = line.split('\t');
    const messages = numbers.trim().split(' ').map(Number);
    if (result !== '0') {
      ++count.refused;
      continue;
    }
    if (repairs !== '0') ++repaired;
    if (messages.some((n) => n === 3017 || n === 3018)) ++leftAlone;
    const before = decode(pages.get(name));
    const after = decode(fs.readFileSync(path.join(folder, name)));
    const a = outline(before);
    const b = outline(after);
    const same = a.length === b.length && a.every((text, i) => text === b[i]);
    let verdict = 'equal';
    if (!same) verdict = messages.includes(EXCUSE) ? 'excused' : 'different';
    ++count[verdict];
    if (again !== '0') ++count.unstable;
    if ((verdict === 'different' || again !== '0') && shown++ < Number(values.show)) {
      console.log(`${verdict}: ${title}/${name} (repairs ${repairs}, again ${again}; messages ${numbers})`);
      if (before.length < 400) console.log(`   page:   ${JSON.stringify(before)}\n   repaired: ${JSON.stringify(after)}`);
      if (verdict === 'different') console.log(`   ${firstDifference(a, b)}`);
    }
  }
  if (count.different > 0 || count.unstable > 0) failed = true;
  const judged = pages.size - count.refused;
  const share = (n) => `${n} (${judged === 0 ? 0 : ((100 * n) / judged).toFixed(2)}%)`;
  console.log(
    `${title}: ${pages.size} pages, ${repaired} repaired, ${leftAlone} with places left alone; equal ${share(count.equal)}, ` +
      `excused ${share(count.excused)}, different ${share(count.different)}, unstable ${count.unstable}` +
      (count.refused > 0 ? `, refused ${count.refused} (UTF-16)` : ''));
}

for (const folder of positionals) {
  const pages = new Map();
  for (const name of fs.readdirSync(folder).sort()) pages.set(name, fs.readFileSync(path.join(folder, name)));
  judge(path.basename(folder), pages);
}
const soup = Number(values.soup);
const kBatch = 2000;
for (let from = 0; from < soup; from += kBatch) {
  const pages = new Map();
  for (let i = from; i < Math.min(from + kBatch, soup); ++i)
    pages.set(`${String(i).padStart(6, '0')}.htm`, Buffer.from(generatedPage(Number(values.seed) * 1_000_003 + i), 'latin1'));
  judge(`generated from ${from}`, pages);
}
process.exit(failed ? 1 : 0);
