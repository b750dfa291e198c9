// The report page in a browser. TAVOLITE is the program under test; `make test-browser` sets everything up.
import assert from "node:assert/strict";
import {execFileSync} from "node:child_process";
import {mkdtempSync, readFileSync, rmSync, statSync, writeFileSync} from "node:fs";
import {tmpdir} from "node:os";
import {join, resolve} from "node:path";
import {fileURLToPath} from "node:url";
import {after, before, test} from "node:test";
import {openReport, withBrowser} from "./browser.mjs";

const top = fileURLToPath(new URL("../..", import.meta.url));
const tavolite = resolve(process.env.TAVOLITE ?? join(top, "build/release/bin/tavolite"));
const directory = mkdtempSync(join(tmpdir(), "linfit-report-"));
const at = (name) => join(directory, name);
const run = (...words) => execFileSync(tavolite, words, {cwd: directory, encoding: "utf8"});

let browser;
let closeBrowser;
before(() => new Promise((started, failed) => {
  withBrowser((opened) => {
    browser = opened;
    started();
    return new Promise((close) => (closeBrowser = close));
  }).catch(failed);
}));
after(() => {
  closeBrowser();
  rmSync(directory, {recursive: true});
});

// Fits a table and writes the page; `change` is SQL that is run on the results file in between.
function makeReport(table, options, change) {
  run("solve", table, ...options, "--quiet");
  if (change) execFileSync("sqlite3", [at("linfit.tdx"), change]);
  run("show", "linfit.tdx", "--format", "html", "--output", "report.html");
  return at("report.html");
}

async function open(file, options) {
  const page = await openReport(browser, file, options);
  assert.deepEqual(page.complaints, []);
  assert.deepEqual(page.requests, [`file://${file}`]);
  return page;
}

const count = (page, selector) => page.$$eval(selector, (elements) => elements.length);
const figures = ["intervals", "residuals", "quantiles", "scale", "histogram", "largest"];

// Marks of a figure are what its mark of class "points" drew, and the rows of the one that is a table.
async function checkFigures(page, expected) {
  const counts = {};
  for (const id of figures) counts[id] = await count(page, `#${id} :is(.points > *, tbody tr)`);
  for (const id of figures) assert.ok(counts[id] > 0, `${id} has no marks`);
  for (const [id, number] of Object.entries(expected)) {
    const points = await count(page, `#${id} .points > *`);
    assert.equal(points || counts[id], number, `marks of ${id}`);
  }
}

// Coefficients stand in the order of their table, whatever their number.
async function checkOrder(page) {
  const height = (dot) => dot.getBoundingClientRect().y;
  const dots = await page.$$("#intervals .points > *");
  const heights = await Promise.all(dots.map((dot) => dot.evaluate(height)));
  assert.deepEqual(heights, [...heights].sort((a, b) => a - b), "order of coefficients");
}

// The text of the tip over a figure's k-th point, whatever point is nearest to its centre.
async function tipAt(page, id, k) {
  const figure = await page.$(`#${id}`);
  await figure.scrollIntoView();
  const box = await page.$eval(`#${id} .points > :nth-child(${k + 1})`, (point) => {
    const {x, y, width, height} = point.getBoundingClientRect();
    return {x: x + width / 2, y: y + height / 2};
  });
  await page.mouse.move(box.x, box.y);
  const tip = await page.waitForSelector(`#${id} [aria-label=tip] text`, {timeout: 3000});
  return tip.evaluate((text) => text.textContent.replaceAll("\u200b", ""));
}

const marks = (page, id) => count(page, `#${id} .marked circle`);

test("Longley: figures, hovering, marking", async () => {
  const page = await open(makeReport(join(top, "tests/chain/data/Longley.csv"), ["--response", "y"]));
  await checkFigures(page, {intervals: 7, residuals: 16, quantiles: 16, scale: 16, largest: 15});
  for (const id of ["residuals", "scale"]) {
    for (const k of [0, 7, 15]) assert.match(await tipAt(page, id, k), new RegExp(`^${k + 1}observation ${k + 1}fitted`));
  }
  assert.match(await tipAt(page, "histogram", 0), /observations?from/);

  await page.click("#largest tbody tr:nth-child(1) a");
  for (const id of figures.slice(1, 5)) assert.equal(await marks(page, id), 1, `${id} after a link`);
  assert.equal(await count(page, "#largest tr.marked"), 1);
  const drag = await page.$eval("#quantiles .brush .overlay", (overlay) => {
    overlay.scrollIntoView({block: "center"});
    const {x, y, width, height} = overlay.getBoundingClientRect();
    return {x, y, width, height};
  });
  await page.mouse.move(drag.x + 1, drag.y + 1);
  await page.mouse.down();
  await page.mouse.move(drag.x + drag.width - 1, drag.y + drag.height - 1, {steps: 4});
  await page.mouse.up();
  for (const id of figures.slice(1, 5)) assert.equal(await marks(page, id), 16, `${id} after dragging`);
  assert.match(await page.$eval("#marked", (status) => status.textContent), /and 11 more/);
  await page.keyboard.press("Escape");
  assert.equal(await marks(page, "residuals"), 0);
  await page.close();
});

test("dark mode and print", async () => {
  const file = at("report.html");
  const colours = {};
  for (const scheme of ["light", "dark"]) {
    const page = await open(file, {scheme});
    colours[scheme] = await page.evaluate(() => [
      getComputedStyle(document.body).backgroundColor,
      getComputedStyle(document.querySelector("#residuals .points > *")).fill,
      getComputedStyle(document.querySelector("#residuals svg text")).fill,
    ]);
    const pdf = await page.pdf({format: "A4"});
    assert.equal(Buffer.from(pdf.slice(0, 5)).toString(), "%PDF-");
    assert.ok(pdf.length > 20000, "an empty print");
    await page.emulateMediaType("print");
    await page.setViewport({width: 680, height: 900});
    const cut = (tables) => tables.filter((table) => table.scrollWidth > table.clientWidth).length;
    assert.equal(await page.$$eval(".wide:not(details *)", cut), 0, "tables cut in print");
    assert.equal(await page.$eval("figure", (f) => getComputedStyle(f).backgroundColor), "rgb(255, 255, 255)");
    await page.close();
  }
  for (const i of [0, 1, 2]) assert.notEqual(colours.light[i], colours.dark[i]);
});

test("without JavaScript: the numbers are there, and figures say what they need", async () => {
  const page = await open(at("report.html"), {script: false});
  const text = await (await page.$("body")).evaluate((body) => body.innerText);
  for (const number of ["836424.1", "304.8541", "-3482259", "455.4"]) assert.ok(text.includes(number), number);
  assert.equal(text.match(/has not run/g).length, 5);
  await page.close();
});

test("a perfect fit: the page warns, and axes have powers of ten", async () => {
  writeFileSync(at("perfect.csv"), ["x,y", ...Array.from({length: 20}, (_, i) => `${i},${1 + 2 * i}`), ""].join("\n"));
  const page = await open(makeReport("perfect.csv", ["--response", "y"]));
  assert.match(await page.$eval(".warnings", (section) => section.innerText), /essentially perfect/);
  await checkOrder(page);
  const ticks = await page.$$eval("#residuals svg text", (texts) => texts.map((text) => text.textContent));
  assert.ok(ticks.some((tick) => /e[-−]1[0-9]/.test(tick)), String(ticks));
  assert.ok(ticks.every((tick) => tick.length < 20), String(ticks));
  await page.close();
});

test("factors and labels beyond ASCII", async () => {
  const cities = ["Zürich", "東京", "Київ", "القاهرة", "São Paulo"];
  const rows = cities.flatMap((city, c) => [0, 1, 2, 3].map((k) => `${city} ${k},${city},${c + k},${c * k + (k % 2)}`));
  writeFileSync(at("cities.csv"), ["name,city,x,y", ...rows, ""].join("\n"));
  const page = await open(makeReport("cities.csv", ["--response", "y", "--label", "name", "--factor", "city"]));
  await checkFigures(page, {intervals: 6, residuals: 20, largest: 15});
  for (const k of [0, 6, 13]) assert.ok((await tipAt(page, "residuals", k)).startsWith(rows[k].split(",")[0]));
  await page.close();
});

test("hostile labels stay texts", async () => {
  const labels = [
    "<script>alert(1)</script>", "</script><img src=x onerror=alert(2)>", "<!--<script>", "&lt;b&gt;", `"'\`\${x}`,
    "x".repeat(63), "\u202Eabc", "' onmouseover='alert(3)", "plain", "other",
  ];
  const rows = labels.map((_, k) => `l${k},${k},${(k * k) % 7}`);
  writeFileSync(at("hostile.csv"), ["name,x,y", ...rows, ""].join("\n"));
  const quoted = (text) => `'${text.replaceAll("'", "''")}'`;
  const update = (from, to) => `update tdx_label set label = ${quoted(to)} where label = ${quoted(from)};`;
  const change = labels.map((label, k) => update(`l${k}`, label)).join("") + update("x", "<b onclick=alert(4)>x</b>") +
    `update tdx_file set model = ${quoted("<img src=x>" + "m".repeat(10000))};` +
    `update tdx_file set warnings = ${quoted("<script>alert(5)</script>")};`;
  const page = await open(makeReport("hostile.csv", ["--response", "y", "--label", "name"], change));
  await checkFigures(page, {intervals: 2, residuals: 10, largest: 10});
  await checkOrder(page);
  assert.equal(await count(page, "img, b"), 0);
  const shown = await page.$$eval("#largest tbody .label", (cells) => cells.map((cell) => cell.textContent));
  assert.deepEqual(shown.sort(), [...labels].sort());
  for (const k of [0, 1, 4]) assert.ok((await tipAt(page, "residuals", k)).startsWith(labels[k]));
  for (const width of [1360, 390]) {
    await page.setViewport({width, height: 900});
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `wider than ${width}`);
  }
  await page.close();
});

test("100,000 observations: hexagons count all, the page stays small", async () => {
  const n = 100000;
  const noise = (i) => Math.sin(i * 12.9898) * 43758.5453 % 1;
  const rows = Array.from({length: n}, (_, i) => `${(i % 1000) / 10},${noise(i) + noise(i + 7) + (i === 77777 ? 50 : 0)}`);
  writeFileSync(at("many.csv"), ["x,y", ...rows, ""].join("\n"));
  const file = makeReport("many.csv", ["--response", "y"]);
  assert.ok(statSync(file).size < 2e6, "page size");
  const page = await open(file);
  assert.ok(page.firstFigure < 5000, `first figure after ${page.firstFigure} ms`);
  await checkFigures(page, {residuals: 500, scale: 500, largest: 15});
  const data = await page.$eval("#fit-data", (element) => JSON.parse(element.textContent));
  for (const hexagons of Object.values(data.hexagons)) {
    assert.equal(hexagons.count.reduce((sum, value) => sum + value), n);
  }
  assert.equal(await count(page, "#residuals .hexagons > *"), data.hexagons.residual.count.length);
  assert.ok(data.quantiles.normal.length <= 1000);
  const outlier = data.points.number.indexOf(77778);
  assert.match(await tipAt(page, "residuals", outlier), /observation 77,778/);
  assert.ok(readFileSync(file, "utf8").includes("Of 100,000 observations the 500"));
  await page.close();
});
