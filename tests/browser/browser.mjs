// Chromium for the tests and for the screenshot, through its own protocol. npm has put the client beside the working
// directory, which is below build/.
import {createRequire} from "node:module";
import {mkdtempSync, rmSync} from "node:fs";
import {tmpdir} from "node:os";
import {join} from "node:path";

const puppeteer = createRequire(join(process.cwd(), "package.json"))("puppeteer-core");
const quiet = ["gpu", "quic", "background-networking", "component-update", "sync"].map((name) => `--disable-${name}`);
const root = process.getuid() === 0 ? ["--no-sandbox"] : [];

// Runs `use` with a browser that has a new profile, which goes in the end.
export async function withBrowser(use) {
  const userDataDir = mkdtempSync(join(tmpdir(), "linfit-browser-"));
  const browser = await puppeteer.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", userDataDir, headless: true,
    args: ["--no-first-run", ...quiet, ...root],
  });
  try {
    return await use(browser);
  } finally {
    await browser.close();
    rmSync(userDataDir, {recursive: true, force: true, maxRetries: 3});
  }
}

export async function openReport(browser, file, {scheme = "light", script = true, width = 1360, height = 900, zoom = 1} = {}) {
  const page = await browser.newPage();
  page.complaints = [];  // console messages, errors and dialogs
  page.requests = [];
  page.on("console", (message) => page.complaints.push(message.text()));
  page.on("pageerror", (error) => page.complaints.push(error.message));
  page.on("dialog", (dialog) => (page.complaints.push(dialog.message()), dialog.dismiss()));
  page.on("request", (request) => page.requests.push(request.url()));
  await page.setJavaScriptEnabled(script);
  await page.setViewport({width, height, deviceScaleFactor: zoom});
  await page.emulateMediaFeatures([{name: "prefers-color-scheme", value: scheme}]);
  const start = performance.now();
  await page.goto(`file://${file}`, {waitUntil: "domcontentloaded"});
  if (script) {
    await page.waitForSelector(".drawing svg");
    page.firstFigure = performance.now() - start;
    await page.waitForSelector("html.drawn");
  }
  return page;
}
