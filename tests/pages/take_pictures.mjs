// take_pictures.mjs FOLDER PAGE...: a picture of each page, in FOLDER, where Playwright is installed.

import { createRequire } from 'node:module';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

const [folder, ...pages] = process.argv.slice(2);
const { chromium } = createRequire(path.join(folder, 'package.json'))('playwright-core');

const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
try {
  const context = await browser.newContext({ colorScheme: 'light', viewport: { width: 640, height: 800 } });
  const view = await context.newPage();
  for (const page of pages) {
    await view.goto(pathToFileURL(page).href);
    await view.screenshot({ path: path.join(folder, `${path.basename(page, '.html')}.png`), fullPage: true });
  }
} finally {
  await browser.close();
}
