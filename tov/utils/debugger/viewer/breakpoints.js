// Breakpoints: subscriptions of type "breakpoint" with a location, a hit count and an entity filter,
// completed from the locations seen in stacks and events. The host does not list subscriptions, so the
// page keeps its own (in the browser's storage, per host), and arms them again after the host was gone,
// since a restarted server has forgotten them.
//   const breakpoints = new BreakpointsView(api, model);  breakpoints.countHit(requestId);

import { say } from "./message.js";
import { keep, stored } from "./storage.js";

export class BreakpointsView {
  constructor(api, model) {
    this.api = api;
    this.model = model;
    this.form = document.getElementById("bp-form");
    this.location = document.getElementById("bp-location");
    this.hits = document.getElementById("bp-hits");
    this.entity = document.getElementById("bp-entity");
    this.list = document.getElementById("bp-list");
    this.options = document.getElementById("bp-locations");
    this.items = stored("breakpoints", []).filter((item) => item && typeof item.location === "string");
    this.form.addEventListener("submit", (event) => {
      event.preventDefault();
      this.add();
    });
    model.on("locations", () => this.renderLocations());
    this.render();
  }

  // Fills the form from a location shown elsewhere (an event, a frame), ready to add.
  prefill(where) {
    this.location.value = where;
    this.location.focus();
  }

  filtersOf(item) {
    const filters = { location: item.location };
    if (item.hits !== null) {
      filters.hitcount = item.hits;
    }
    if (item.entity !== null) {
      filters.entities = [item.entity];
    }
    return filters;
  }

  async add() {
    const where = this.location.value.trim();
    const hits = this.hits.value === "" ? null : Number(this.hits.value);
    const entity = this.entity.value === "" ? null : Number(this.entity.value);
    if (!/^[a-z][a-z0-9+.-]*:/i.test(where)) {
      say(`Breakpoint not added: "${where}" is not a location (scheme:path#fragment)`, "error");
      return;
    }
    if (hits !== null && !(Number.isInteger(hits) && hits >= 0)) {
      say("Breakpoint not added: the hit count is a whole number", "error");
      return;
    }
    // Over HTTP the host reads every number of an entity filter as 0: a filter on entity 3 would stop
    // entity 0 only. Refuse it rather than arm what the person did not ask for.
    if (entity !== null && entity !== 0) {
      say("Breakpoint not added: this host's entity filter selects entity 0 only over HTTP; " +
        "use a hit count, or entity 0", "error");
      return;
    }
    const item = { requestId: null, location: where, hits, entity, hitsSeen: 0 };
    if (await this.arm(item)) {
      this.items.push(item);
      save(this.items);
      this.render();
      this.model.addLocation(where);
      say(`Breakpoint at ${where}${hits !== null ? ` from hit ${hits}` : ""} added (request ${item.requestId})`, "done");
    }
  }

  async arm(item) {
    let reply;
    try {
      reply = await this.api.post("events/subscriptions", { type: "breakpoint", filters: this.filtersOf(item) },
        { urgent: true });
    } catch (_) {
      say("Breakpoint not added: the host did not answer", "error");
      return false;
    }
    if (!reply.ok || !reply.data || !Number.isInteger(reply.data.requestId)) {
      say(`Breakpoint at ${item.location} refused: ${reply.error || "no request id in the answer"}`, "error");
      return false;
    }
    item.requestId = reply.data.requestId;
    return true;
  }

  async remove(item) {
    let reply;
    try {
      reply = await this.api.delete(`events/subscriptions/${item.requestId}`, { urgent: true });
    } catch (_) {
      say("Breakpoint not removed: the host did not answer", "error");
      return;
    }
    if (reply.ok || reply.status === 204) {
      this.items = this.items.filter((other) => other !== item);
      save(this.items);
      this.render();
      say(reply.ok ? `Breakpoint at ${item.location} removed`
        : `Breakpoint at ${item.location} was already gone on the host (restarted, or removed elsewhere)`, "done");
    } else {
      say(`Breakpoint not removed: ${reply.error}`, "error");
    }
  }

  // After the host came back: a new server has no subscription of ours, so each one is made again.
  async rearm() {
    let armed = 0;
    for (const item of this.items) {
      if (await this.arm(item)) {
        armed += 1;
      }
    }
    save(this.items);
    this.render();
    if (armed > 0) {
      say(`${armed} breakpoint${armed === 1 ? "" : "s"} armed again on the host`, "done");
    }
  }

  countHit(requestId) {
    const item = this.items.find((candidate) => candidate.requestId === requestId);
    if (item) {
      item.hitsSeen += 1;
      this.render();
    }
  }

  render() {
    const rows = this.items.map((item) => {
      const li = document.createElement("li");
      li.dataset.request = item.requestId;
      const text = document.createElement("span");
      text.className = "mono";
      text.style.flex = "1";
      text.textContent = item.location;
      const detail = document.createElement("span");
      detail.className = "note";
      const parts = [];
      if (item.hits !== null) {
        parts.push(`from hit ${item.hits}`);
      }
      if (item.entity !== null) {
        parts.push(`entity ${item.entity}`);
      }
      parts.push(`stopped ${item.hitsSeen}×`, `request ${item.requestId}`);
      detail.textContent = parts.join(" · ");
      const remove = document.createElement("button");
      remove.textContent = "Remove";
      remove.title = `Remove the breakpoint at ${item.location}`;
      remove.addEventListener("click", () => this.remove(item));
      li.append(text, detail, remove);
      return li;
    });
    if (rows.length === 0) {
      const li = document.createElement("li");
      li.className = "note";
      li.textContent = "No breakpoint set from this page.";
      rows.push(li);
    }
    this.list.replaceChildren(...rows);
  }

  renderLocations() {
    const options = [...this.model.locations].sort().map((where) => {
      const option = document.createElement("option");
      option.value = where;
      return option;
    });
    this.options.replaceChildren(...options);
  }
}

function save(items) {
  keep("breakpoints", items);
}
