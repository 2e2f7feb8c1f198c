// tov-dap driven by a real Debug Adapter Protocol client against a running tov-demo: an editor's session
// from initialize to disconnect, with a breakpoint at #seek from its second pass, steps, a pause of one
// thread and the host left running; then the malformed input that must not end the adapter, and the
// host going away.
//
//   node --test dap.test.mjs        (CTest runs it as tov_dap_client)
// Environment: TOV_DEMO the tov-demo program (../../build/apps/demo/tov-demo), TOV_DAP the adapter
// (../../build/apps/dap/tov-dap).

import { after, describe, it } from "node:test";
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { createRequire } from "node:module";
import path from "node:path";
import { fileURLToPath } from "node:url";

const require = createRequire(import.meta.url);
const { DebugClient } = require("@vscode/debugadapter-testsupport");

const here = path.dirname(fileURLToPath(import.meta.url));
const demoProgram = process.env.TOV_DEMO || path.resolve(here, "../../build/apps/demo/tov-demo");
const adapterProgram = process.env.TOV_DAP || path.resolve(here, "../../build/apps/dap/tov-dap");
const seek = "tov:agents/forager.behavior#seek";
const live = "tov:agents/forager.behavior#live";
const waitMs = 10000;
const children = [];

after(() => children.forEach((child) => child.exitCode === null && child.kill("SIGKILL")));

function sleep(ms) {
  return new Promise((resolve) => setTimeout(resolve, ms));
}

// Starts tov-demo on a free port and resolves with its base URL once its inspector listens.
function startDemo() {
  return new Promise((resolve, reject) => {
    const child = spawn(demoProgram, ["--port", "0", "--save", "", "--seconds", "120"], { stdio: ["ignore", "pipe", "pipe"] });
    children.push(child);
    let output = "";
    const timer = setTimeout(() => reject(new Error(`tov-demo did not start:\n${output}`)), waitMs);
    child.stdout.on("data", (chunk) => {
      output += chunk;
      const found = /inspector listening on (http:\/\/[^\s:]+):(\d+)/.exec(output);
      if (found) {
        clearTimeout(timer);
        resolve({ child, url: `${found[1]}:${found[2]}`, port: Number(found[2]) });
      }
    });
    child.on("exit", (code) => reject(new Error(`tov-demo ended (${code}):\n${output}`)));
  });
}

function startAdapter() {
  const child = spawn(adapterProgram, [], { stdio: ["pipe", "pipe", "pipe"] });
  children.push(child);
  child.log = "";
  child.stderr.on("data", (chunk) => { child.log += chunk; });
  return child;
}

async function host(url, resource, init) {
  const reply = await fetch(`${url}/api/${resource}`, init);
  return { status: reply.status, body: await reply.json().catch(() => null) };
}

// Resolves once `check` holds, polling; fails after waitMs.
async function until(what, check) {
  const deadline = Date.now() + waitMs;
  while (Date.now() < deadline) {
    if (await check()) return;
    await sleep(50);
  }
  assert.fail(`timed out waiting for ${what}`);
}

describe("tov-dap with an editor's client", { timeout: 60000 }, () => {
  it("debugs the demo's agents and leaves the host running", async () => {
    const demo = await startDemo();
    const adapter = startAdapter();
    const dc = new DebugClient("unused", "unused", "tov");
    dc.defaultTimeout = waitMs;
    dc.connect(adapter.stdout, adapter.stdin);
    const stops = [];
    dc.on("stopped", (event) => stops.push(event.body));
    // The stop that follows a request: counted before it is sent, since its event may come in the same
    // read as the response.
    const stopAfter = async (send) => {
      const count = stops.length + 1;
      await send();
      await until(`stopped event ${count}`, () => stops.length >= count);
      return stops[count - 1];
    };
    // Another client of the host: its subscription and its events must outlive the session.
    const foreign = await host(demo.url, "events/subscriptions", { method: "POST", body: JSON.stringify({ type: "suspension" }) });

    const capabilities = (await dc.initializeRequest({ adapterID: "tov", linesStartAt1: true, columnsStartAt1: true })).body;
    assert.equal(capabilities.supportsFunctionBreakpoints, true);
    assert.equal(capabilities.supportsHitConditionalBreakpoints, true);
    assert.equal(capabilities.supportsConditionalBreakpoints, undefined, "the host evaluates no conditions");
    await Promise.all([dc.waitForEvent("initialized"), dc.attachRequest({ host: "127.0.0.1", port: demo.port })]);

    const threads = (await dc.threadsRequest()).body.threads;
    assert.deepEqual(threads.map((thread) => thread.name), [0, 1, 2, 3, 4, 5, 6, 7].map((n) => `entity ${n}`));

    const set = await dc.setFunctionBreakpointsRequest({ breakpoints: [
      { name: seek, hitCondition: "2" }, { name: seek, condition: "energy > 3" }, { name: "no location" }] });
    const [atSeek, conditional, nowhere] = set.body.breakpoints;
    assert.equal(atSeek.verified, true);
    assert.equal(conditional.verified, false);
    assert.match(conditional.message, /cannot evaluate conditions/);
    assert.equal(nowhere.verified, false);
    const lines = await dc.setBreakpointsRequest({ source: { path: "/tmp/forager.behavior" }, breakpoints: [{ line: 3 }] });
    assert.equal(lines.body.breakpoints[0].verified, false);
    assert.match(lines.body.breakpoints[0].message, /function breakpoint/);

    await dc.configurationDoneRequest();
    await until("the breakpoint's stop", () => stops.length >= 1);
    const hit = stops[0];
    assert.equal(hit.reason, "function breakpoint");
    assert.deepEqual(hit.hitBreakpointIds, [atSeek.id]);
    assert.equal(hit.allThreadsStopped, false);
    // The host lets every later pass stop too: remove the breakpoint, and step the entity that stopped last.
    await dc.setFunctionBreakpointsRequest({ breakpoints: [] });
    const entityOf = (threadId) => threads.find((candidate) => candidate.id === threadId)?.name;
    await until("the last stop to be the host's", async () => stops.length > 0 &&
      entityOf(stops[stops.length - 1].threadId) === `entity ${(await host(demo.url, "debug/suspend")).body.entity}`);
    const thread = stops[stops.length - 1].threadId;

    const frames = (await dc.stackTraceRequest({ threadId: thread })).body.stackFrames;
    assert.deepEqual(frames.map((frame) => frame.name), [seek, live, "tov:simulation"]);
    const document = (await dc.sourceRequest({ sourceReference: frames[0].source.sourceReference, source: frames[0].source })).body.content;
    assert.equal(document.split("\n")[0], seek);
    assert.match(document, /"energy"/);
    const scopes = (await dc.scopesRequest({ frameId: frames[0].id })).body.scopes;
    const data = (await dc.variablesRequest({ variablesReference: scopes[0].variablesReference })).body.variables;
    const byName = Object.fromEntries(data.map((variable) => [variable.name, variable]));
    assert.deepEqual(Object.keys(byName).sort(), ["agent", "energy", "position", "target"]);
    assert.equal(byName.agent.type, "integer");
    assert.equal(byName.agent.variablesReference, 0);
    const position = (await dc.variablesRequest({ variablesReference: byName.position.variablesReference })).body.variables;
    assert.deepEqual(position.map((variable) => variable.name), ["x", "y"]);
    const agent = await dc.evaluateRequest({ expression: "world/agents/3", context: "watch" });
    const fields = (await dc.variablesRequest({ variablesReference: agent.body.variablesReference })).body.variables;
    assert.equal(fields.find((variable) => variable.name === "name").value, '"forager-3"');
    await assert.rejects(dc.evaluateRequest({ expression: "world/nothing/here" }), /404/);

    const stepped = await stopAfter(() => dc.nextRequest({ threadId: thread }));
    assert.deepEqual([stepped.reason, stepped.threadId], ["step", thread]);
    assert.equal((await dc.stackTraceRequest({ threadId: thread })).body.stackFrames[0].name, seek);
    const out = await stopAfter(() => dc.stepOutRequest({ threadId: thread }));
    assert.deepEqual([out.reason, out.threadId], ["step", thread]);
    assert.equal((await dc.stackTraceRequest({ threadId: thread })).body.stackFrames[0].name, live);
    assert.equal((await dc.continueRequest({ threadId: thread })).body.allThreadsContinued, true);

    // Another client suspends and resumes the host: the editor sees a pause that is not its own, and the resume.
    assert.match((await stopAfter(() => host(demo.url, "debug/suspend", { method: "POST" }))).description, /another client/);
    const resumed = dc.waitForEvent("continued");
    await host(demo.url, "debug/resume", { method: "POST" });
    assert.equal((await resumed).body.allThreadsContinued, true);

    const paused = threads[3].id;
    const pause = await stopAfter(() => dc.pauseRequest({ threadId: paused }));
    assert.deepEqual([pause.reason, pause.threadId, pause.allThreadsStopped], ["pause", paused, false]);

    const tick = (await host(demo.url, "world/tick")).body.tick;
    await dc.disconnectRequest({});
    await until("the adapter to end", () => adapter.exitCode !== null);
    assert.equal((await host(demo.url, "debug/suspend")).body.suspended, false, "the pause is resumed on disconnect");
    await until("the demo's tick to advance", async () => (await host(demo.url, "world/tick")).body.tick > tick);
    const left = (await host(demo.url, "events")).body;
    assert.ok(left.length > 0, "the other client's events stay queued");
    for (const id of left) {
      assert.equal((await host(demo.url, `events/${id}`)).body.requestId, foreign.body.requestId);
    }
    assert.equal((await host(demo.url, `events/subscriptions/${foreign.body.requestId}`, { method: "DELETE" })).status, 200);
    demo.child.kill();
  });

  it("launches the demo, finds its inspector from what it prints, and ends it on disconnect", async () => {
    const adapter = startAdapter();
    const dc = new DebugClient("unused", "unused", "tov");
    dc.defaultTimeout = waitMs;
    dc.connect(adapter.stdout, adapter.stdin);
    const printed = [];
    dc.on("output", (event) => printed.push(event.body.output));
    await dc.initializeRequest({ adapterID: "tov" });
    await Promise.all([dc.waitForEvent("initialized"),
      dc.launchRequest({ program: demoProgram, args: ["--port", "0", "--save", "", "--seconds", "60"] })]);
    assert.equal((await dc.threadsRequest()).body.threads.length, 8);
    const url = /inspector listening on (http:\S+)/.exec(printed.join(""))[1];
    await dc.disconnectRequest({});
    await assert.rejects(fetch(`${url}/api/debug`), "the launched host ends with the session");
  });

  it("serves editors that connect to --listen, one session after another", async () => {
    const adapter = spawn(adapterProgram, ["--listen", "0"], { stdio: ["ignore", "ignore", "pipe"] });
    children.push(adapter);
    let log = "";
    adapter.stderr.on("data", (chunk) => { log += chunk; });
    await until("the adapter to listen", () => /listening on 127\.0\.0\.1:\d+/.test(log));
    const port = Number(/listening on 127\.0\.0\.1:(\d+)/.exec(log)[1]);
    for (const session of [1, 2]) {
      const dc = new DebugClient("unused", "unused", "tov");
      await dc.start(port);
      dc.defaultTimeout = waitMs;
      assert.equal((await dc.initializeRequest({ adapterID: "tov" })).body.supportsFunctionBreakpoints, true, `session ${session}`);
      await dc.disconnectRequest({});
    }
    adapter.kill("SIGTERM");
    await until("the adapter to end", () => adapter.exitCode !== null);
    assert.equal(adapter.exitCode, 0, "a signal ends the adapter as a disconnect would");
  });

  it("answers malformed input and goes on, and ends the session when the host goes away", async () => {
    const demo = await startDemo();
    const adapter = startAdapter();
    const received = [];
    let pending = Buffer.alloc(0);
    adapter.stdout.on("data", (chunk) => {
      pending = Buffer.concat([pending, chunk]);
      for (let header; (header = /^Content-Length: (\d+)\r\n\r\n/.exec(pending.toString("latin1")));) {
        const start = header[0].length;
        const length = Number(header[1]);
        if (pending.length < start + length) break;
        received.push(JSON.parse(pending.subarray(start, start + length).toString("utf8")));
        pending = pending.subarray(start + length);
      }
    });
    const frame = (body, length = Buffer.byteLength(body)) => `Content-Length: ${length}\r\n\r\n${body}`;
    const request = (seq, command, args) => JSON.stringify({ seq, type: "request", command, arguments: args });
    const response = async (seq) => {
      await until(`the response to ${seq}`, () => received.some((m) => m.type === "response" && m.request_seq === seq));
      return received.find((m) => m.type === "response" && m.request_seq === seq);
    };
    const short = request(3, "initialize", { adapterID: "tov" });
    const long = request(4, "threads");
    adapter.stdin.write(
      "Content-Length: abc\r\n\r\n" +
      frame("not json") +
      frame(short, short.length - 10) +             // too short: the rest stands before the next header
      frame(long, long.length + 200) +              // too long: the next header shows where it ended
      frame(request(5, "frobnicate")) +
      frame(request(6, "attach")) +
      frame(JSON.stringify({ type: "request", command: "threads" })) +
      frame("[1,2]") +
      frame(request(7, "attach", { host: "127.0.0.1", port: demo.port })));
    assert.equal((await response(3)).success, true);
    assert.match((await response(4)).message, /attach or launch first/);
    assert.match((await response(5)).message, /does not offer the request 'frobnicate'/);
    assert.match((await response(6)).message, /port/);
    assert.equal((await response(7)).success, true);
    adapter.stdin.write(frame(request(8, "stackTrace", {})) + frame(request(9, "variables", { variablesReference: 999 })) +
                        frame(request(12, "initialize", { linesStartAt1: "yes", columnsStartAt1: [] })) +
                        frame(request(10, "threads")));
    assert.match((await response(8)).message, /threadId/);
    assert.equal((await response(12)).success, true, "members of a wrong kind are taken as absent");
    assert.match((await response(9)).message, /no variables 999/);
    assert.equal((await response(10)).body.threads.length, 8);
    for (const line of [/Content-Length 'abc'/, /no JSON object was skipped: 'not json'/, /without a numeric seq/, /announced \d+ bytes/]) {
      assert.match(adapter.log, line);
    }

    demo.child.kill("SIGKILL");
    await until("the terminated event", () => received.some((m) => m.event === "terminated"));
    assert.ok(received.some((m) => m.event === "output" && /went away/.test(m.body.output)));
    adapter.stdin.write(frame(request(11, "disconnect", {})));
    assert.equal((await response(11)).success, true);
    await until("the adapter to end", () => adapter.exitCode !== null);
    assert.equal(adapter.exitCode, 0);
  });
});
