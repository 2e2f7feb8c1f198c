// The web viewer in headless Chromium against a running tov-demo: the page loads cleanly, shows the
// agents, stops one at a breakpoint, steps it, resumes, lists events (newborn agents registering among
// them), switches an engine, keeps a foreign page from driving the host, and lives through the host
// going away and coming back.
//
//   node --test viewer.test.mjs        (CTest runs it as tov_viewer_browser)
// Environment: TOV_DEMO the tov-demo program (../../build/apps/demo/tov-demo); CHROMIUM the browser
// (/usr/bin/chromium); TOV_VIEWER_ARTIFACTS where screenshots go (./viewer-artifacts); TOV_VIEWER_URL
// the page, with {port} for the demo's port. Without it the page is the host's own /ui/ when the host
// serves one, else the development server's (devserver.mjs), which passes /api/ on to the host.

import { after, before, describe, it } from "node:test";
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import fs from "node:fs";
import http from "node:http";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";
import { startDevServer } from "./devserver.mjs";

const here = path.dirname(fileURLToPath(import.meta.url));
const demoProgram = process.env.TOV_DEMO || path.resolve(here, "../../build/apps/demo/tov-demo");
const browserProgram = process.env.CHROMIUM || "/usr/bin/chromium";
const artifacts = process.env.TOV_VIEWER_ARTIFACTS || path.resolve("viewer-artifacts");
const seek = "tov:agents/forager.behavior#seek";
const waitMs = 20000;

let demo;
let port;
let devServer = null;
let hostServesPage = false;
let browser;
let page;
const consoleErrors = [];
const pageErrors = [];
let hostGone = false;

// Starts tov-demo on a free port (or the port given) and resolves with it once the server listens. Its
// agents die after 40 rounds (some 2 s) and newborns register under their ids while the page watches.
function startDemo(wantedPort = 0) {
  return new Promise((resolve, reject) => {
    const child = spawn(demoProgram,
      ["--port", String(wantedPort), "--save", "", "--seconds", "600", "--lifespan", "40"],
      { stdio: ["ignore", "pipe", "pipe"] });
    let output = "";
    const timer = setTimeout(() => reject(new Error(`tov-demo did not start:\n${output}`)), waitMs);
    child.stdout.on("data", (chunk) => {
      output += chunk;
      const found = /listening on (?:port |http:\/\/[^\s:]+:)(\d+)/.exec(output);
      if (found) {
        clearTimeout(timer);
        resolve({ child, port: Number(found[1]) });
      }
    });
    child.stderr.on("data", (chunk) => { output += chunk; });
    child.on("exit", (code) => reject(new Error(`tov-demo ended (${code}):\n${output}`)));
  });
}

function stopDemo(child) {
  return new Promise((resolve) => {
    if (child.exitCode !== null) {
      resolve();
      return;
    }
    const timer = setTimeout(() => child.kill("SIGKILL"), 10000);
    child.once("exit", () => {
      clearTimeout(timer);
      resolve();
    });
    child.kill("SIGTERM");
  });
}

// One request to the host from outside the browser: { status, headers, body }.
function hostRequest(method, resource, { body, headers = {} } = {}) {
  return new Promise((resolve, reject) => {
    const request = http.request({ host: "127.0.0.1", port, method, path: resource, headers }, (reply) => {
      let text = "";
      reply.on("data", (chunk) => { text += chunk; });
      reply.on("end", () => resolve({ status: reply.statusCode, headers: reply.headers, body: text }));
    });
    request.setTimeout(5000, () => request.destroy(new Error("no answer")));
    request.on("error", reject);
    request.end(body);
  });
}

async function hostJson(resource) {
  const reply = await hostRequest("GET", resource);
  return JSON.parse(reply.body);
}

async function shot(name) {
  await page.screenshot({ path: path.join(artifacts, `${name}.png`) });
}

async function until(condition, what, ms = waitMs) {
  const end = Date.now() + ms;
  for (;;) {
    const value = await condition();
    if (value) {
      return value;
    }
    if (Date.now() > end) {
      throw new Error(`timed out waiting for ${what}`);
    }
    await new Promise((resolve) => setTimeout(resolve, 100));
  }
}

const text = (selector) => page.locator(selector).first().textContent();
const runState = () => page.locator("#run-state").getAttribute("data-state");

async function readTick() {
  const shown = await text("#res-tree");
  const found = /tick:\s*(\d+)/.exec(shown || "");
  return found ? Number(found[1]) : null;
}

describe("the web viewer on tov-demo", { timeout: 240000 }, () => {
  before(async () => {
    fs.mkdirSync(artifacts, { recursive: true });
    ({ child: demo, port } = await startDemo());
    let url = process.env.TOV_VIEWER_URL ? process.env.TOV_VIEWER_URL.replace("{port}", String(port)) : "";
    if (!url) {
      const own = await hostRequest("GET", "/ui/");
      hostServesPage = own.status === 200 && /text\/html/.test(own.headers["content-type"] || "");
      if (hostServesPage) {
        url = `http://127.0.0.1:${port}/ui/`;
      } else {
        devServer = await startDevServer({ apiPort: port });
        url = `http://127.0.0.1:${devServer.port}/ui/`;
      }
    } else {
      hostServesPage = url.startsWith(`http://127.0.0.1:${port}/`);
    }
    browser = await chromium.launch({ executablePath: browserProgram, args: ["--no-sandbox"] });
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, colorScheme: "light" });
    page = await context.newPage();
    page.on("console", (message) => {
      // Once the host is stopped on purpose, the browser reports the requests that fail (entities
      // unregistered by a stopping host answer 404, then connections are refused, and a stop seen just
      // before may be gone by the time its frames are read): those lines are the browser's, not the page's.
      if (message.type() === "error" && !(hostGone && /^Failed to load resource/.test(message.text()))) {
        consoleErrors.push(message.text());
      }
    });
    page.on("pageerror", (error) => pageErrors.push(error.message));
    // The browser's own line for a failed request does not name it: this does.
    page.on("response", (response) => {
      if (response.status() >= 400 && !hostGone) {
        consoleErrors.push(`${response.request().method()} ${response.url()}: ${response.status()}`);
      }
    });
    await page.goto(url);
  });

  after(async () => {
    if (browser) {
      await browser.close();
    }
    if (devServer) {
      devServer.server.close();
    }
    if (demo) {
      await stopDemo(demo);
    }
  });

  it("loads without a console error and connects", async () => {
    await until(async () => (await page.locator("#connection").getAttribute("data-state")) === "connected",
      "the connection");
    await page.waitForTimeout(1500);
    assert.deepEqual(consoleErrors, []);
    assert.deepEqual(pageErrors, []);
  });

  it("lists the eight agents, running", async () => {
    await until(async () => (await page.locator("#entity-list li").count()) === 8, "eight entities");
    assert.equal(await page.locator('#entity-list .state[data-state="running"]').count(), 8);
    assert.equal(await runState(), "running");
  });

  let stopped;
  it("stops an agent at a breakpoint at #seek from its second hit, its stack showing #seek", async () => {
    await page.fill("#bp-location", seek);
    await page.fill("#bp-hits", "2");
    await page.click('#bp-form button[type="submit"]');
    await until(async () => (await page.locator("#bp-list li[data-request]").count()) === 1, "the breakpoint in the list");
    await until(async () => (await runState()) === "suspended", "the stop");
    stopped = (await hostJson("/api/debug/suspend")).entity;
    await until(async () => /stopped [1-9]/.test(await text("#bp-list li[data-request]")), "the hit counted");
    await until(async () => ((await text("#stack-list li .location")) || "").endsWith("#seek"), "#seek on top");
    await shot("viewer");
    // No other agent is to stop there while this one is stepped.
    await page.click("#bp-list li[data-request] button");
    await until(async () => (await page.locator("#bp-list li[data-request]").count()) === 0, "the breakpoint removed");
    await until(async () => (await text("#stack-entity")) === `entity ${stopped}`, "the stopped entity selected");
    await until(async () => ((await text("#stack-list li .location")) || "").endsWith("#seek"), "#seek on top");
    assert.equal(await page.locator(`#entity-list li[data-entity="${stopped}"] .state`).getAttribute("data-state"),
      "suspended");
    assert.match(page.url(), new RegExp(`entity=${stopped}`));
    await shot("breakpoint-stop");
  });

  it("steps over (F10): the agent moves and stops in #seek again", async () => {
    const top = async () => {
      const frames = await hostJson(`/api/debug/entities/${stopped}/contexts`);
      return hostJson(`/api/debug/entities/${stopped}/contexts/${frames.length - 1}`);
    };
    const before = await top();
    await page.locator("body").press("F10");
    // The page answers the key with the command: once it says so, the host's next stop is the step's.
    await until(async () => /^Stepping over/.test(await text("#message")), "the step sent");
    await until(async () => (await hostJson("/api/debug/suspend")).suspended, "the stop after the step");
    await until(async () => (await runState()) === "suspended", "the page showing the stop");
    const afterStep = await top();
    assert.notDeepEqual(afterStep.position, before.position);
    await until(async () => ((await text("#stack-list li .location")) || "").endsWith("#seek"), "#seek on top again");
    await until(async () => ((await text("#stack-list .tree")) || "").includes(String(afterStep.position.x).slice(0, 6)),
      "the frame's new position");
    await shot("step-over");
  });

  it("resumes (F8) and the tick advances in the resource browser", async () => {
    await page.locator("body").press("F8");
    await until(async () => (await runState()) === "running", "running");
    await page.click('.tabs [data-view="resources"]');
    await page.fill("#res-path", "world/tick");
    await page.click('#res-form button[type="submit"]');
    const first = await until(readTick, "the tick");
    await until(async () => (await readTick()) > first, "a later tick");
    assert.match(page.url(), /view=resources/);
  });

  it("plots a watched number", async () => {
    await page.click('#res-tree .watch-pick');
    await page.click('.tabs [data-view="watch"]');
    const value = async () => Number(await text("#watch-list .watch .value"));
    const first = await until(value, "a watched value");
    await until(async () => (await value()) > first, "a later watched value");
    await shot("watch");
  });

  it("suspends everything, then resumes", async () => {
    await page.click("#btn-suspend-all");
    await until(async () => (await runState()) === "suspended", "the stop of everything");
    // Every worker thread stops at its next frame change, each with its own suspension event.
    await until(async () => (await page.locator('#entity-list .state[data-state="suspended"]').count()) >= 2,
      "the stopped entities of both worker threads");
    assert.equal(await page.locator("#btn-suspend-all").isDisabled(), true);
    await page.click("#btn-resume");
    await until(async () => (await runState()) === "running", "running again");
  });

  it("lists the breakpoint and suspension events with their time of arrival", async () => {
    await page.click('.tabs [data-view="events"]');
    await until(async () => (await page.locator('#event-rows tr[data-type="breakpoint"]').count()) > 0, "a breakpoint event");
    await until(async () => (await page.locator('#event-rows tr[data-type="suspension"]').count()) > 0, "a suspension event");
    const row = page.locator('#event-rows tr[data-type="breakpoint"]').first();
    assert.match(await row.locator("td").nth(1).textContent(), /\d\d:\d\d:\d\d\.\d{3}/);
    assert.equal(await row.locator("td").nth(4).textContent(), seek);
    // The page reads events; it does not delete them: another client still finds them.
    assert.ok((await hostJson("/api/events")).length > 0);
    await shot("events");
  });

  it("shows registration events when entities register while it watches", async () => {
    for (const type of ["unregistration", "registration"]) {
      await until(async () => (await page.locator(`#event-rows tr[data-type="${type}"]`).count()) > 0, `${type} events`);
    }
  });

  it("switches the world engine off and on as the host reports it, and the resource browser says so", async () => {
    await page.click('.tabs [data-view="resources"]');
    const toggle = () => page.locator('#engine-list li[data-engine="world"] input[type="checkbox"]');
    const hostSays = async () => (await hostJson("/api/engines")).find((engine) => engine.path === "world").enabled;
    await until(async () => (await page.locator("#engine-list li[data-engine]").count()) === 3, "the host's engines");
    assert.equal(await toggle().isChecked(), true);
    await toggle().click();
    await until(async () => ((await text("#res-status")) || "").includes("engine world is switched off"), "the off badge");
    assert.equal(await page.locator("#res-tree.off").count(), 1);
    assert.match(await text("#message"), /Engine world switched off/);
    assert.equal(await hostSays(), false);
    assert.equal(await toggle().isChecked(), false);
    await shot("world-off");
    // Switched on by another client: the page follows the host within its next reading of the list.
    assert.equal((await hostRequest("POST", "/api/engines", { body: '{"world":true}' })).status, 200);
    await until(async () => (await page.locator("#res-tree.off").count()) === 0, "the badge gone");
    assert.equal(await toggle().isChecked(), true);
    assert.equal(await hostSays(), true);
  });

  it("keeps a page of another origin from driving the host", async (t) => {
    if (!hostServesPage) {
      t.skip("the host is the exact startHttp form, which answers every origin: only the configured form refuses");
      return;
    }
    const foreign = http.createServer((_, reply) => reply.end("<!doctype html><title>elsewhere</title>"));
    await new Promise((resolve) => foreign.listen(0, "127.0.0.1", resolve));
    try {
      const other = await browser.newPage();
      await other.goto(`http://localhost:${foreign.address().port}/`);
      await other.evaluate(async (target) => {
        await fetch(target, { method: "POST", mode: "no-cors", body: "{}" }).catch(() => {});
      }, `http://127.0.0.1:${port}/api/debug/suspend`);
      // The fetch resolves once the host has answered it: its effect, if any, is there by now.
      await other.close();
      assert.equal((await hostJson("/api/debug/suspend")).suspended, false);
      const refused = await hostRequest("POST", "/api/debug/suspend",
        { body: "{}", headers: { Origin: "http://elsewhere.example" } });
      assert.equal(refused.status, 403);
    } finally {
      foreign.close();
    }
  });

  it("keeps the last state on screen while the host is gone, and reconnects to a new one", async () => {
    hostGone = true;
    await stopDemo(demo);
    await until(async () => (await page.locator("#connection").getAttribute("data-state")) === "gone", "host gone");
    assert.equal(await page.locator("#entity-list li").count(), 8);
    await shot("host-gone");
    ({ child: demo } = await startDemo(port));
    await until(async () => (await page.locator("#connection").getAttribute("data-state")) === "connected",
      "connected again", 30000);
    assert.deepEqual(pageErrors, []);
    await shot("reconnected");
  });

  it("follows the system's dark theme", async () => {
    await page.emulateMedia({ colorScheme: "dark" });
    const background = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    assert.equal(background, "rgb(15, 18, 23)");
    await shot("dark");
    assert.deepEqual(consoleErrors, []);
  });
});
