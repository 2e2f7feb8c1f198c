// tov-inspect and tov-demo as a person uses them: a demo host on a free port, then tables of command
// lines, each with its exit status and a pattern that its output (standard output, then standard error)
// must hold. Run by CTest (tov_programs_command_line) with the programs in TOV_INSPECT and TOV_DEMO.
import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { execFile, spawn } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const inspect = process.env.TOV_INSPECT;
const demo = process.env.TOV_DEMO;
const version = process.env.TOV_VERSION;
const scratch = mkdtempSync(join(tmpdir(), 'tov-programs-'));
let host;
let url;

// A command line run to its end, at most 30 seconds: its exit status and all it printed.
function run(program, args, env = {}) {
  return new Promise((resolve) => {
    execFile(program, args, { timeout: 30000, env: { ...process.env, ...env } }, (error, stdout, stderr) => {
      resolve({ status: error ? error.code : 0, output: stdout + stderr });
    });
  });
}

// Each row: [status, pattern, program, arguments, environment]; rows run in order.
async function expectAll(rows) {
  for (const [status, pattern, program, args, env] of rows) {
    const { status: got, output } = await run(program, args, env);
    const line = `${program} ${args.join(' ')}`;
    assert.equal(got, status, `${line}\n${output}`);
    assert.match(output, pattern, line);
  }
}

const client = (...args) => [inspect, ['--url', url, ...args]];

before(async () => {
  host = spawn(demo, ['--port', '0', '--seconds', '100', '--save', '', '--tick-ms', '10']);
  let printed = '';
  url = await new Promise((resolve, reject) => {
    const timer = setTimeout(() => reject(new Error(`the demo printed no URL:\n${printed}`)), 10000);
    host.stdout.on('data', (data) => {
      printed += data;
      const found = /^inspector listening on (http:\S+)$/m.exec(printed);
      if (found) {
        clearTimeout(timer);
        resolve(found[1]);
      }
    });
  });
});

after(() => {
  host.kill();
  rmSync(scratch, { recursive: true, force: true });
});

test('the command line itself', () => expectAll([
  [0, new RegExp(`^tov-inspect ${version}$`, 'm'), inspect, ['--version']],
  [0, /--no-wait/, inspect, ['help', 'step']],
  [2, /Usage: tov-inspect stack \[OPTIONS\] ENTITY/, inspect, ['stack']],
  [2, /frobnicate/, inspect, ['frobnicate']],
  [2, /'x' is no port/, inspect, ['--host', '127.0.0.1:x', 'status']],
  [2, /is no location/, ...client('break', 'not-a-uri')],
  [0, /_tov_inspect/, inspect, ['--bash-completion']],
]));

test('finding the host, and paths pasted whole', () => {
  const port = url.split(':').pop();
  return expectAll([
    [0, /"tick"/, inspect, ['--host', `127.0.0.1:${port}`, 'get', '/api/world/tick']],
    [0, /"tick"/, inspect, ['--host', url, 'get', `${url}/api/world/tick`]],
    [0, /^\[\{"entity":0,"location":"[^"]*","state":"running"\}/, inspect, ['--json', 'entities'],
      { TOV_INSPECT_URL: url }],
    [3, /cannot connect to 127.0.0.1:1/, inspect, ['--port', '1', 'status']],
    [3, /^\{"error":"cannot connect/m, inspect, ['--port', '1', '--json', 'status']],
  ]);
});

test('replies and refusals', () => expectAll([
  [0, /^\[\]$/m, ...client('--json', 'events')],
  [0, /^\[\{"energy"/, ...client('--json', 'get', 'world/agents?first=1&count=2')],
  [1, /first=x.*\(400\)/, ...client('get', 'world/agents?first=x')],
  [1, /no engine 'nothing'/, ...client('enable', 'nothing')],
  [0, /^enabled events$/m, ...client('enable', 'events')],
  [0, /^ENGINE +ANSWERS/m, ...client('engines')],
]));

test('a stop, a step that waits for the next one, and events that stay until deleted', () => expectAll([
  [0, /suspension request/, ...client('subscribe', 'suspension')],
  [0, /every entity stops/, ...client('suspend')],
  [0, /^suspended/, ...client('wait-suspended', '--timeout', '10')],
  [0, /^ENTITY +STATE +LOCATION/m, ...client('status')],
  [0, /^suspended, entity \d+ at tov:agents\/forager.behavior#/, ...client('step', 'in')],
  [0, /^resumed/, ...client('resume')],
  [0, /suspension/, ...client('events', '--follow', '--count', '1')],
  [0, /"type":"suspension"/, ...client('--json', 'events', '--delete')],
  [0, /^\[\]$/m, ...client('--json', 'events')],
]));

test('a host that wants a token gets it, and its refusal is shown', async () => {
  const refusing = createServer((request, reply) => {
    reply.writeHead(401, { 'Content-Type': 'application/json' });
    reply.end(JSON.stringify({ error: `refused ${request.headers.authorization}` }));
  });
  await new Promise((resolve) => refusing.listen(0, '127.0.0.1', resolve));
  const port = String(refusing.address().port);
  try {
    await expectAll([
      [1, /refused Bearer s3 \(401\)/, inspect, ['--port', port, 'status'], { TOV_INSPECT_TOKEN: 's3' }],
      [1, /^\{"error":"refused Bearer t4"\}$/m, inspect, ['--port', port, '--token', 't4', '--json', 'status']],
    ]);
  } finally {
    refusing.close();
  }
});

test("the demo's refusals, help and loaded worlds", () => {
  const oops = join(scratch, 'oops.json');
  const world = join(scratch, 'world');
  writeFileSync(oops, '{"agents":"oops"}');
  const briefly = ['--port', '0', '--seconds', '1'];
  return expectAll([
    [1, /cannot start from .*oops.json: 'agents' is a string, not an array/, demo, ['--load', oops]],
    [2, /File does not exist/, demo, ['--load', join(scratch, 'missing.json')]],
    [0, /--agents UINT:UINT in \[1 - 10000\]=8/, demo, ['--help']],
    [0, /^tov-demo: 1 agent on 1 worker thread,/m, demo, ['--agents', '1', '--workers', '1', ...briefly,
      '--save', world]],
    [0, /^tov-demo: loaded tick \d+ from .*world.json \(1 agent,/m, demo, ['--load', `${world}.json`, ...briefly,
      '--save', '']],
    [0, /^tov-demo: --agents 3 is overridden: .*world.txt holds 1 agent$/m, demo, ['--load', `${world}.txt`,
      '--agents', '3', ...briefly, '--save', '']],
  ]);
});
