// check_pages.mjs WQSTAT DATA FOLDER: makes the page of every analysis and opens it in a browser without a window.
//
// Each page writes nothing to the console, asks for nothing besides itself, has no violations that axe-core finds, in light and in dark, has
// nothing to scroll sideways at 320 pixels and every figure on one line, and prints to a PDF whose text holds every row of its tables, cell beside
// cell and in order, and every figure in one piece, with a break before the report and none behind a heading or inside of what fits on a page.
// Pictures of all of them stay in FOLDER.

import { spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, statSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

const [wqstat, data, folder] = process.argv.slice(2);
const require = createRequire(path.join(folder, 'package.json'));
const { chromium } = require('playwright-core');
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');

const analyses = {
  columns: ['plants.csv'],
  describe: ['--mu', '5.517', 'cavendish.txt'],
  frequency: ['--classes', '5', 'cavendish.txt'],
  pairs: ['nist_norris.txt'],
  correlate: ['nist_norris.txt', '--x-label', 'a label that is so long that nobody would print it on a page of any width at all'],
  regress: ['--model', 'power', '--residuals', 'nist_norris.txt'],
  anova: ['nist_sirstv.txt', '--x-label', 'instrument', '--y-label', 'resistivity (ohm cm)'],
  'anova-differs': ['toothgrowth_supp.txt'],
  multiy: ['seedlings.txt'],
  fit: ['mendel_peas.txt'],
  ks: ['pi_e_digits.txt'],
  variances: ['nist_sirstv_instrument1.txt', 'nist_sirstv_instrument2.txt'],
  circular: ['--unit', 'degrees', 'directions.txt'],
  'describe-several': ['cavendish.txt', 'nist_sirstv_instrument1.txt', 'missing.txt', 'nist_sirstv_instrument2.txt'],
  'anova-several': ['nist_smls01.txt', 'nist_smls02.txt', 'nist_smls07.txt', 'nist_sirstv.txt', 'toothgrowth_supp.txt'],
  'regress-several': ['--model', 'linear', '--residuals', 'nist_norris.txt', 'nist_sirstv.txt'],
  'circular-several': ['--unit', 'degrees', 'directions.txt', 'directions.txt'],
  'describe-constant': ['constant.txt'],
  'anova-labels': ['--group', 'treatment', '--value', 'height_cm', 'plants.csv'],
  'columns-hostile': ['hostile.csv'],
  'describe-parts': ['--column', 'w', '--by', 's', 'parts.csv'],
};

const movedBreaks = new Set(['fit', 'multiy', 'columns', 'describe-several', 'describe-parts']);

const faults = [];
function expect(holds, page, text) {
  if (!holds) faults.push(`${page}: ${text}`);
}

function run(program, words, status = 0) {
  const result = spawnSync(program, words, { cwd: data, encoding: 'utf8' });
  if (result.status !== status) throw new Error(`${program} ${words.join(' ')}: ${result.stderr}`);
  return result.stdout;
}

// Where the row ends behind a place of a printed text: its cells stand beside each other, between them at most the end of a page.
function placeOf(printed, cells, from) {
  const whole = cells.join('');
  const place = printed.indexOf(whole, from);
  return place < 0 ? -1 : place + whole.length;
}

// How often each word stands in a text.
function wordsOf(text) {
  const counts = new Map();
  for (const word of text.split(/\s+/)) counts.set(word, (counts.get(word) ?? 0) + 1);
  return counts;
}

// A figure that breaks in the middle of its digits is two words.
function expectWholeFigures(name, figures, printed) {
  const found = wordsOf(printed);
  for (const [figure, count] of wordsOf(figures.join(' ')))
    expect((found.get(figure) ?? 0) >= count, name, `prints the figure ${figure} in pieces: ${found.get(figure) ?? 0} of ${count} are whole`);
}

// The figures that stand on more than one line; the numbers of a text outside of them are words, too.
async function brokenFigures(page) {
  return page.evaluate(() => {
    const lines = (range) => new Set([...range.getClientRects()].filter((box) => box.width > 0).map((box) => Math.round(box.top))).size;
    const broken = [];
    const texts = document.createTreeWalker(document.querySelector('main'), NodeFilter.SHOW_TEXT);
    while (texts.nextNode()) {
      const text = texts.currentNode;
      if (!text.parentElement.closest('data, td:not(.failed), .summary')) continue;
      for (const word of text.data.matchAll(/[-\u2212+]?\d[\d.]*(e[-+]?\d+)?/g)) {
        const range = document.createRange();
        range.setStart(text, word.index);
        range.setEnd(text, word.index + word[0].length);
        if (lines(range) > 1) broken.push(word[0]);
      }
    }
    return broken;
  });
}

const plain = (text) => text.replace(/\s+/g, '');

// The lines of each printed page.
function pagesOf(pdf) {
  const pages = run('pdftotext', ['-layout', pdf, '-']).split('\f');
  return pages.map((text) => text.split('\n').map(plain).filter((line) => line !== '')).filter((lines) => lines.length > 0);
}

// The headings of a page, and what stands behind each; nothing of a picture, whose text is printed in no order.
async function headingsOf(page) {
  const found = await page.$$eval('h1, h2, h3', (all) => all.map((heading) => {
    let next = '';
    for (let part = heading.nextElementSibling; part !== null && part.querySelector('svg') === null; part = part.nextElementSibling) next += part.textContent;
    return { text: heading.textContent, next };
  }));
  return found.map(({ text, next }) => ({ text: plain(text), next: plain(next).slice(0, 12) }));
}

// The heading that is the last thing on a printed page, on one line or on several. A list may end in the same words: what follows tells.
function headingAtEnd(lines, nextPage, headings) {
  let end = '';
  for (const line of [...lines].reverse().slice(0, 4)) {
    end = line + end;
    const found = headings.find(({ text, next }) => text === end && nextPage.join('').slice(0, 40).includes(next));
    if (found !== undefined) return found;
  }
  return undefined;
}

// How A4 breaks: no heading is the last thing on a page, each report begins one, and sections that are shorter than a page are in one piece.
async function lookAtBreaks(page, name, pdf) {
  const pages = pagesOf(pdf);
  const headings = await headingsOf(page);
  pages.slice(0, -1).forEach((lines, i) => {
    const heading = headingAtEnd(lines, pages[i + 1], headings);
    expect(heading === undefined, name, `has the heading ${heading?.text} at the end of printed page ${i + 1}`);
  });

  const reports = await page.$$eval('section.report', (all) => all.length);
  const begun = pages.filter((lines) => lines[0] === 'Report').length;
  expect(begun === reports, name, `${begun} of ${reports} reports begin a printed page`);

  // Sections without a picture, whose text tells where they are: those of the data and of how the page was made.
  const short = await page.$$eval('section.data, section.made', (all) => all.map((section) => [...section.querySelectorAll('h2, h3, li, dt, dd')].map((part) => part.textContent)));
  const printed = pages.map((lines) => lines.join(''));
  for (const parts of short.filter((texts) => texts.join('').length < 1500)) {
    const whole = parts.map(plain).filter((text) => text !== '');
    expect(printed.some((text) => whole.every((part) => text.includes(part))), name, `breaks its section ${parts[0]}`);
  }
}

// Wherever the breaks come to lie: an empty space on top moves them through the page.
async function lookAtMovedBreaks(page, name, pdf) {
  await page.evaluate(() => document.body.prepend(Object.assign(document.createElement('div'), { id: 'space' })));
  for (let height = 0; height < 260; height += 13) {
    await page.evaluate((space) => (document.getElementById('space').style.height = `${space}mm`), height);
    await page.pdf({ path: pdf, preferCSSPageSize: true });
    await lookAtBreaks(page, `${name}, ${height} mm lower`, pdf);
  }
  await page.evaluate(() => document.getElementById('space').remove());
}

// The report on the page is what was printed, from its first character on.
// The reports that a command printed, each without what stands between two of them, and without the key of groups, which is none of the report's.
function reportsIn(printed) {
  const parts = printed.split(/^==> .* <==\n/m);
  if (parts.length === 1) return [printed.replace(/(^group \d+: .*\n)+$/m, '')];
  return parts.slice(1).map((part, i) => (i + 2 < parts.length ? part.replace(/\n$/, '') : part));
}

// The reports of the page are those that were printed, to the last character, from the first on.
async function lookAtReports(page, name, printed) {
  if (name.startsWith('columns')) return;
  const reports = await page.$$eval('section.report pre', (all) => all.map((pre) => pre.textContent));
  const expected = reportsIn(printed);
  expect(reports.length > 0 && (reports.length === expected.length || /several|parts/.test(name)), name, `has ${reports.length} reports of ${expected.length}`);
  for (const [i, report] of reports.entries())
    expect(report.trim() !== '' && report === expected[i], name, `has another report than was printed: ${report.slice(0, 80)}`);
}

async function look(browser, name, file, scheme, output) {
  const context = await browser.newContext({ colorScheme: scheme, viewport: { width: 900, height: 1200 } });
  const page = await context.newPage();
  const requested = [];
  page.on('console', (message) => expect(false, name, `console: ${message.text()}`));
  page.on('pageerror', (error) => expect(false, name, `error: ${error}`));
  page.on('request', (request) => requested.push(request.url()));
  const address = pathToFileURL(file).href;
  await page.goto(address);
  await page.screenshot({ path: path.join(folder, `${name}-${scheme}.png`), fullPage: true });
  expect(requested.length === 1 && requested[0] === address, name, `asks for ${requested}`);

  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => window.axe.run());
  for (const violation of violations)
    expect(false, name, `${scheme}: ${violation.id}: ${violation.help} (${violation.nodes.map((node) => node.target).join(', ')})`);

  await lookAtReports(page, name, output);
  if (scheme === 'light') {
    const pdf = path.join(folder, `${name}.pdf`);
    await page.pdf({ path: pdf, preferCSSPageSize: true });
    const text = run('pdftotext', ['-raw', pdf, '-']);
    expectWholeFigures(name, await page.$$eval('data', (all) => all.map((figure) => figure.textContent)), text);
    await lookAtBreaks(page, name, pdf);
    if (movedBreaks.has(name)) await lookAtMovedBreaks(page, name, path.join(folder, `${name}-moved.pdf`));
    const printed = plain(text);
    const rows = await page.$$eval('tbody tr', (all) => all.map((row) => [...row.children].map((cell) => cell.textContent)));
    expect(rows.length > 2, name, 'has no table');
    let place = 0;
    for (const row of rows) {
      const found = placeOf(printed, row.map(plain), place);
      expect(found >= 0, name, `the row ${row.join(' | ')} is not printed, or not in its place`);
      if (found >= 0) place = found;
    }
  }

  await page.setViewportSize({ width: 320, height: 800 });
  const width = await page.evaluate(() => document.documentElement.scrollWidth);
  expect(width <= 320, name, `is ${width} pixels wide at 320`);
  const broken = await brokenFigures(page);
  expect(broken.length === 0, name, `breaks the figures ${broken.join(' ')} at 320`);
  await page.screenshot({ path: path.join(folder, `${name}-${scheme}-320.png`), fullPage: true });
  await context.close();
}

mkdirSync(folder, { recursive: true });
const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
try {
  const made = (name, text) => writeFileSync(path.join(folder, name), text);
  made('constant.txt', '4\n4\n4\n4\n');
  const evil = ['<script>alert(1)</script>', '</pre></main><img src=x onerror=alert(1)>', '&lt;b&gt;', '\u202egnp.exe', '\u001b[31mred', 'x'.repeat(300)];
  made('hostile.csv', `${evil.map((text) => `"${text}"`).join(',')}\n${['1', '2', '4'].map((row) => evil.map((text, i) => (i % 2 ? row : `"${text}"`)).join(',')).join('\n')}\n`);
  made('parts.csv', `s,w\n${Array.from({ length: 60 }, (_, i) => `part ${i % 15},${(i * 7) % 11}`).join('\n')}\n`);
  made('plants.csv', 'plant,treatment,height_cm,day,ph <b>\n1,ctrl,4.17,2024-05-02,7\n2,compost,5.58,2024-05-03,<6\n3,ctrl,,2024-05-06,6.8\n');
  for (const [name, given] of Object.entries(analyses)) {
    const words = given.map((word) => (existsSync(path.join(folder, word)) ? path.join(folder, word) : word));
    const file = path.join(folder, `${name}.html`);
    const output = run(wqstat, [name.split('-')[0], ...words, '--html', file], words.includes('missing.txt') ? 1 : 0);
    expect(statSync(file).size < 300 * 1024, name, 'is too large');
    for (const scheme of ['light', 'dark']) await look(browser, name, file, scheme, output);
  }
} finally {
  await browser.close();
}
for (const fault of faults) console.error(fault);
console.log(`${Object.keys(analyses).length} pages, ${faults.length} faults; pictures of them in ${folder}`);
process.exit(faults.length === 0 ? 0 : 1);
