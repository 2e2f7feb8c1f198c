// The page's turn: a few times a second while it is seen, every few seconds while its tab is hidden,
// read what the views need, one request at a time, and keep the last state on screen while the host is
// gone. Every module below does one thing; this one wires them.

import { api, HostGone } from "./api.js";
import { connection } from "./connection.js";
import { say } from "./message.js";
import { urlState } from "./urlstate.js";
import { model } from "./model.js";
import { EntitiesView } from "./entities.js";
import { StackView } from "./stack.js";
import { Controls } from "./controls.js";
import { BreakpointsView } from "./breakpoints.js";
import { EventsView } from "./events.js";
import { EnginesView } from "./engines.js";
import { WatchView } from "./watch.js";

const pauseShownMs = 300;
const pauseHiddenMs = 3000;
const views = ["breakpoints", "events", "resources", "watch"];

let wake = null;
function wakePoller() {
  if (wake) {
    wake();
  }
}

function framePath(path) {
  const match = /^debug\/entities\/(\d+)\/contexts\/\d+$/.exec(path);
  return match ? Number(match[1]) : null;
}

const watch = new WatchView(api, {
  // A frame's data is read only while its entity is stopped (see StackView).
  canRead: (path) => {
    const entity = framePath(path);
    return entity === null || model.entityState(entity) === "suspended";
  },
});
const pick = (path, pointer, label) => watch.add(path, pointer, label);
const entities = new EntitiesView(api, model, urlState);
const breakAt = (where) => {
  showView("breakpoints");
  breakpoints.prefill(where);
};
const stack = new StackView(api, model, { onPick: pick, onLocation: breakAt });
const breakpoints = new BreakpointsView(api, model);
const engines = new EnginesView(api, urlState, { onPick: pick });
engines.wake = wakePoller;
const events = new EventsView(api, model, {
  onStop: (entity) => model.noteStop(entity),
  onHit: (requestId) => breakpoints.countHit(requestId),
  onSelect: (entity) => entities.choose(entity),
  onLocation: breakAt,
});
new Controls(api, model, connection, { afterCommand: wakePoller });

// A stop seen while the page is open brings its entity forward, as debuggers do with a paused thread.
// The first state read leaves alone the entity that the address chose.
let lastStop;
model.on("status", () => {
  const stop = model.status.suspended ? model.status.entity : null;
  if (stop !== null && stop !== lastStop && (lastStop !== undefined || model.selected === null)) {
    entities.choose(stop);
  }
  lastStop = stop;
});

function showView(view) {
  const chosen = views.includes(view) ? view : "breakpoints";
  for (const tab of document.querySelectorAll(".tabs [data-view]")) {
    tab.setAttribute("aria-selected", tab.dataset.view === chosen ? "true" : "false");
  }
  for (const panel of document.querySelectorAll(".view[data-view]")) {
    panel.classList.toggle("shown", panel.dataset.view === chosen);
  }
  urlState.set({ view: chosen === "breakpoints" ? "" : chosen });
  currentView = chosen;
  if (chosen === "watch") {
    watch.drawAll();
  }
  wakePoller();
}
let currentView = "breakpoints";
for (const tab of document.querySelectorAll(".tabs [data-view]")) {
  tab.addEventListener("click", () => showView(tab.dataset.view));
}
showView(urlState.get("view") || (urlState.get("res") ? "resources" : "breakpoints"));
document.addEventListener("visibilitychange", wakePoller);

async function turn(count) {
  const status = await api.get("debug/suspend");
  connection.markAnswered();
  if (status.ok && status.data) {
    model.setStatus(status.data.suspended === true, status.data.entity);
  } else if (count % 10 === 0) {
    say(`The debugger cannot be read: ${status.error}`, "error");
  }
  await entities.poll(count);
  await stack.poll();
  await events.poll();
  await engines.poll(currentView === "resources" && !document.hidden);
  if (!document.hidden) {
    await watch.poll();
  }
}

async function run() {
  let count = 0;
  let subscribed = false;
  let wasGone = false;
  for (;;) {
    try {
      if (!subscribed) {
        await events.subscribe();
        subscribed = true;
        if (wasGone) {
          engines.reconnected();
          await breakpoints.rearm();
        }
      }
      await turn(count);
      count += 1;
      wasGone = false;
    } catch (error) {
      if (!(error instanceof HostGone)) {
        throw error;
      }
      api.dropQueued();
      // A server that comes back is a new one: its subscriptions, ours included, are gone.
      subscribed = false;
      wasGone = true;
      await connection.pauseAfterFailure();
      continue;
    }
    await new Promise((resolve) => {
      wake = resolve;
      setTimeout(resolve, document.hidden ? pauseHiddenMs : pauseShownMs);
    });
    wake = null;
  }
}

run().catch((error) => {
  // A fault of the page itself, not of the host: say so where a person looks.
  connection.set("gone", `viewer fault: ${error.message}`);
});
