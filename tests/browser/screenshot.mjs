// Takes a picture of a report page down to the second row of its figures: screenshot.mjs PAGE PNG [light|dark]
import {resolve} from "node:path";
import {openReport, withBrowser} from "./browser.mjs";

const [page, picture, scheme] = process.argv.slice(2);
await withBrowser(async (browser) => {
  const width = 1240;
  const view = await openReport(browser, resolve(page), {scheme, width, zoom: 0.6});
  const height = await view.$eval("#scale", (figure) => figure.getBoundingClientRect().bottom + 14);
  await view.screenshot({path: resolve(picture), clip: {x: 0, y: 0, width, height}});
});
