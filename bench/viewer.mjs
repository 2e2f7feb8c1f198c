// What the web viewer costs the simulation: tov-demo's tick rate with the page open in headless
// Chromium, side by side with the page closed, in alternating rounds of one run so that a drift of the
// machine falls on both sides. The page is opened the way a person leaves it busy: an entity selected,
// the whole world browsed with auto-refresh, the tick watched. Run by bench/viewer.sh.
//   node bench/viewer.mjs DEMO SECONDS ROUNDS        prints "closed <ticks/s>", "open <ticks/s>" per round

import { spawn } from "node:child_process";
import http from "node:http";
import { chromium } from "../tests/viewer/node_modules/playwright-core/index.mjs";
import { startDevServer } from "../tests/viewer/devserver.mjs";

const [demoProgram, secondsText = "20", roundsText = "2"] = process.argv.slice(2);
const seconds = Number(secondsText);
const rounds = Number(roundsText);
const browserProgram = process.env.CHROMIUM || "/usr/bin/chromium";

function get(port, resource) {
  return new Promise((resolve, reject) => {
    http.get({ host: "127.0.0.1", port, path: resource }, (reply) => {
      let text = "";
      reply.on("data", (chunk) => { text += chunk; });
      reply.on("end", () => resolve({ status: reply.statusCode, type: reply.headers["content-type"] || "", text }));
    }).on("error", reject);
  });
}

const sleep = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

async function tickRate(port) {
  const start = JSON.parse((await get(port, "/api/world/tick")).text).tick;
  const begun = process.hrtime.bigint();
  await sleep(seconds * 1000);
  const end = JSON.parse((await get(port, "/api/world/tick")).text).tick;
  const elapsed = Number(process.hrtime.bigint() - begun) / 1e9;
  return (end - start) / elapsed;
}

const demo = spawn(demoProgram, ["--port", "0", "--save", ""], { stdio: ["ignore", "pipe", "ignore"] });
const port = await new Promise((resolve, reject) => {
  let output = "";
  demo.stdout.on("data", (chunk) => {
    output += chunk;
    const found = /inspector listening on http:\/\/[^\s:]+:(\d+)/.exec(output);
    if (found) {
      resolve(Number(found[1]));
    }
  });
  demo.on("exit", () => reject(new Error(`tov-demo ended:\n${output}`)));
  setTimeout(() => reject(new Error(`tov-demo did not start within 30 s:\n${output}`)), 30000).unref();
});

let devServer = null;
let url = `http://127.0.0.1:${port}/ui/`;
const own = await get(port, "/ui/");
if (!(own.status === 200 && own.type.includes("text/html"))) {
  devServer = await startDevServer({ apiPort: port });
  url = `http://127.0.0.1:${devServer.port}/ui/`;
}
url += "#entity=1&view=resources&res=world";
console.log(`page ${url}${devServer ? " (development server: the host serves no page)" : ""}`);

try {
  await sleep(2000); // the workers settle into their rhythm
  for (let round = 0; round < rounds; ++round) {
    console.log(`closed ${(await tickRate(port)).toFixed(3)}`);
    const browser = await chromium.launch({ executablePath: browserProgram, args: ["--no-sandbox"] });
    const page = await browser.newPage({ viewport: { width: 1280, height: 800 } });
    let requests = 0;
    page.on("request", () => { requests += 1; });
    await page.goto(url);
    await page.waitForSelector('#connection[data-state="connected"]');
    await page.click('#res-tree .watch-pick').catch(() => {});
    await sleep(2000);
    const requestsBefore = requests;
    console.log(`open ${(await tickRate(port)).toFixed(3)}`);
    console.log(`requests ${((requests - requestsBefore) / seconds).toFixed(1)}`);
    await browser.close();
  }
} finally {
  devServer && devServer.server.close();
  demo.kill("SIGTERM");
}
