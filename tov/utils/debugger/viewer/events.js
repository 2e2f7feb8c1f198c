// Events: the page subscribes to every kind of event but breakpoints (those come from the breakpoints'
// own subscriptions, this page's and other clients'), reads the host's queue by identifier and keeps
// the last identifier it saw. It never deletes an event on its own: another client (tov-inspect, an
// editor) may still need it. "Delete all on host" does, on purpose, after a second click.
//   const events = new EventsView(api, model, { onStop, onHit, onSelect, onLocation });
//   await events.subscribe();  await events.poll();

import { authorization } from "./api.js";
import { say } from "./message.js";

const kinds = ["initialization", "termination", "disconnection", "suspension", "registration", "unregistration",
  "breakpoint"];
const subscribed = kinds.filter((kind) => kind !== "breakpoint");
const readsPerTurn = 25;
const backlog = 200;   // how far back a fresh page reads a queue that others filled
const kept = 1000;

export class EventsView {
  constructor(api, model, { onStop, onHit, onSelect, onLocation }) {
    this.api = api;
    this.model = model;
    this.onStop = onStop;
    this.onHit = onHit;
    this.onSelect = onSelect;
    this.onLocation = onLocation;
    this.events = [];          // newest last, as read
    this.lastSeen = -1;        // the highest identifier read
    this.handles = [];         // this page's own subscriptions
    this.loaded = false;
    this.rows = document.getElementById("event-rows");
    this.note = document.getElementById("events-note");
    this.badge = document.getElementById("event-badge");
    this.clearButton = document.getElementById("events-clear");
    this.shown = new Set(kinds);
    this.renderChips();
    this.clearButton.addEventListener("click", () => this.clear());
    this.rows.addEventListener("click", (event) => {
      const target = event.target.closest("[data-entity],[data-location]");
      if (target && target.dataset.entity !== undefined) {
        this.onSelect(Number(target.dataset.entity));
      } else if (target) {
        this.onLocation(target.dataset.location);
      }
    });
    // Subscriptions end with the page: a queue that nobody reads must not keep growing for it.
    window.addEventListener("pagehide", () => this.unsubscribeOnLeave());
  }

  async subscribe() {
    const handles = [];
    for (const type of subscribed) {
      const reply = await this.api.post("events/subscriptions", { type });
      if (reply.ok && reply.data && Number.isInteger(reply.data.requestId)) {
        handles.push(reply.data.requestId);
      }
    }
    this.handles = handles;
    if (handles.length < subscribed.length) {
      this.note.textContent = "The host refused some subscriptions: only the events of other clients show.";
    }
  }

  unsubscribeOnLeave() {
    for (const handle of this.handles) {
      // keepalive lets the request outlive the page; it is the last one the page sends.
      fetch(`/api/events/subscriptions/${handle}`, { method: "DELETE", keepalive: true, headers: authorization() })
        .catch(() => {});
    }
    this.handles = [];
  }

  async poll() {
    const reply = await this.api.get("events");
    if (!reply.ok || !Array.isArray(reply.data)) {
      this.note.textContent = `The events could not be read: ${reply.error}`;
      return;
    }
    const ids = reply.data.filter(Number.isInteger);
    if (ids.length > 0 && ids[ids.length - 1] < this.lastSeen) {
      // Identifiers start again at 0 on a new server: what was seen belongs to the old one.
      this.lastSeen = -1;
      this.note.textContent = "The host's event queue started again (a new server).";
    }
    let fresh = ids.filter((id) => id > this.lastSeen);
    if (!this.loaded && fresh.length > backlog) {
      fresh = fresh.slice(-backlog);
    }
    const arrivedBefore = !this.loaded;
    this.loaded = true;
    let added = 0;
    for (const id of fresh.slice(0, readsPerTurn)) {
      const event = await this.api.get(`events/${id}`);
      this.lastSeen = Math.max(this.lastSeen, id);
      if (!event.ok || !event.data) {
        continue; // deleted by another client between the two requests
      }
      this.take({ ...event.data, arrived: new Date(), before: arrivedBefore });
      added += 1;
    }
    if (added > 0) {
      if (this.events.length > kept) {
        this.events.splice(0, this.events.length - kept);
      }
      this.render();
    }
    this.badge.textContent = ids.length > 0 ? `${ids.length}` : "";
    this.badge.title = `${ids.length} events queued on the host`;
  }

  take(event) {
    this.events.push(event);
    if (typeof event.location === "string") {
      this.model.addLocation(event.location);
    }
    if (!event.before && Number.isInteger(event.entity) &&
        (event.type === "suspension" || event.type === "breakpoint")) {
      this.onStop(event.entity);
    }
    if (!event.before && event.type === "breakpoint") {
      this.onHit(event.requestId);
    }
  }

  async clear() {
    if (!this.clearButton.dataset.armed) {
      this.clearButton.dataset.armed = "1";
      this.clearButton.textContent = "Click again: delete for every client";
      setTimeout(() => {
        delete this.clearButton.dataset.armed;
        this.clearButton.textContent = "Delete all on host";
      }, 4000);
      return;
    }
    delete this.clearButton.dataset.armed;
    this.clearButton.textContent = "Delete all on host";
    let reply;
    try {
      reply = await this.api.delete("events", { urgent: true });
    } catch (_) {
      say("Events not deleted: the host did not answer", "error");
      return;
    }
    if (reply.ok) {
      this.events = [];
      this.render();
      say("Every queued event was deleted on the host", "done");
    } else {
      say(`Events not deleted: ${reply.error}`, "error");
    }
  }

  renderChips() {
    const chips = document.getElementById("event-types");
    chips.replaceChildren(...kinds.map((kind) => {
      const label = document.createElement("label");
      const box = document.createElement("input");
      box.type = "checkbox";
      box.checked = true;
      box.addEventListener("change", () => {
        if (box.checked) {
          this.shown.add(kind);
        } else {
          this.shown.delete(kind);
        }
        this.render();
      });
      label.append(box, kind);
      return label;
    }));
  }

  render() {
    const rows = [];
    for (let i = this.events.length - 1; i >= 0 && rows.length < 300; --i) {
      const event = this.events[i];
      if (!this.shown.has(event.type)) {
        continue;
      }
      const tr = document.createElement("tr");
      tr.dataset.type = event.type;
      tr.dataset.id = event.id;
      const time = event.before ? `≤ ${clock(event.arrived)}` : clock(event.arrived);
      tr.append(cell(event.id), cell(time, event.before ? "already queued when the page opened" : ""),
        cell(event.type, `request ${event.requestId}`));
      const entity = cell(Number.isInteger(event.entity) ? event.entity : "");
      if (Number.isInteger(event.entity)) {
        entity.className = "link";
        entity.dataset.entity = event.entity;
        entity.title = "Show this entity";
      }
      const where = cell(event.location || "");
      where.classList.add("location");
      if (event.location) {
        where.classList.add("link");
        where.dataset.location = event.location;
        where.title = "Add a breakpoint here";
      }
      tr.append(entity, where);
      rows.push(tr);
    }
    this.rows.replaceChildren(...rows);
  }
}

function cell(text, title = "") {
  const td = document.createElement("td");
  td.textContent = text;
  if (title) {
    td.title = title;
  }
  return td;
}

function clock(date) {
  return `${date.toLocaleTimeString([], { hour12: false })}.${String(date.getMilliseconds()).padStart(3, "0")}`;
}
