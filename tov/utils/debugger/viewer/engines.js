// Engines with their on/off switch, and a browser for any resource of any engine, shown as a tree that
// refreshes itself. The host lists no engines and does not tell whether one is on: the page knows
// "debug" and "events", learns the others from the paths a person browses or adds (kept per host), and
// shows a switch as it was last set from here ("not known" until then).
//   const engines = new EnginesView(api, urlState, { onPick });  await engines.poll(visible);

import { JsonTree, escapeKey } from "./tree.js";
import { say } from "./message.js";
import { keep, stored } from "./storage.js";

const builtIn = ["debug", "events"];

export class EnginesView {
  constructor(api, urlState, { onPick }) {
    this.api = api;
    this.urlState = urlState;
    this.list = document.getElementById("engine-list");
    this.addForm = document.getElementById("engine-form");
    this.addInput = document.getElementById("engine-path");
    this.form = document.getElementById("res-form");
    this.input = document.getElementById("res-path");
    this.auto = document.getElementById("res-auto");
    this.status = document.getElementById("res-status");
    this.suggestions = document.getElementById("res-paths");
    this.treeElement = document.getElementById("res-tree");
    this.tree = new JsonTree(this.treeElement, {
      openDepth: 2,
      onPick: (pointer) => onPick(this.path, pointer, `${this.path}${pointer}`),
    });
    const saved = load();
    this.engines = new Map(); // path -> { enabled: true | false | null (not known), answer: text }
    for (const path of [...builtIn, ...saved.paths]) {
      this.engines.set(path, { enabled: saved.enabled[path] ?? null, answer: "" });
    }
    this.path = "";
    this.pending = true;
    this.unprobed = true;
    const wanted = urlState.get("res");
    if (wanted) {
      this.input.value = wanted;
      this.path = clean(wanted);
      this.learn(this.path);
    }
    this.form.addEventListener("submit", (event) => {
      event.preventDefault();
      this.browse(this.input.value);
    });
    this.addForm.addEventListener("submit", (event) => {
      event.preventDefault();
      const path = clean(this.addInput.value).split("/")[0];
      if (path) {
        this.learn(path);
        this.addInput.value = "";
        this.browse(path);
      }
    });
    this.render();
  }

  browse(path) {
    this.path = clean(path);
    this.input.value = this.path;
    this.urlState.set({ res: this.path });
    this.tree.clear();
    this.pending = true;
    this.learn(this.path);
    this.wake && this.wake();
  }

  learn(path) {
    const first = path.split("/")[0];
    if (first && !this.engineOf(path)) {
      this.engines.set(first, { enabled: null, answer: "" });
      this.store();
      this.render();
    }
  }

  // The engine that the host routes a path to: segments compare over the shorter of the two.
  engineOf(path) {
    const first = path.split("/")[0];
    for (const engine of this.engines.keys()) {
      const n = Math.min(engine.length, first.length);
      if (n > 0 && engine.slice(0, n) === first.slice(0, n)) {
        return engine;
      }
    }
    return null;
  }

  // Whether each engine answers at its root, once a connection: the host lists none of them.
  async probe() {
    for (const [path, state] of this.engines) {
      const reply = await this.api.get(path);
      state.answer = reply.ok ? "answers" : reply.error;
    }
    this.unprobed = false;
    this.render();
  }

  // A server that comes back may be another host: what was known of its engines is asked again.
  reconnected() {
    this.unprobed = true;
  }

  async poll(visible) {
    if (this.unprobed) {
      await this.probe();
    }
    if (!this.path || !(this.pending || (visible && this.auto.checked))) {
      return;
    }
    this.pending = false;
    const path = this.path;
    const reply = await this.api.get(path);
    if (path !== this.path) {
      return;
    }
    const engine = this.engineOf(path);
    const state = engine ? this.engines.get(engine) : null;
    if (state) {
      state.answer = reply.ok ? "answers" : reply.error;
    }
    const off = state && state.enabled === false;
    this.treeElement.classList.toggle("off", Boolean(off));
    const when = new Date().toLocaleTimeString([], { hour12: false });
    const parts = [`GET /api/${path}`, reply.ok ? `${reply.status}` : reply.error, when];
    if (engine) {
      parts.push(`engine ${engine}: ${off ? "off" : state.enabled ? "on" : "on/off not known"}`);
    }
    this.status.replaceChildren();
    if (off) {
      const badge = document.createElement("span");
      badge.className = "badge-off";
      badge.textContent = `engine ${engine} is switched off · `;
      this.status.append(badge);
    }
    this.status.append(parts.join(" · "));
    if (reply.ok) {
      this.tree.show(reply.data === undefined ? null : reply.data);
      this.suggest(path, reply.data);
    } else {
      this.tree.clear(reply.error);
    }
    this.render();
  }

  async setEnabled(path, on) {
    let reply;
    try {
      // The host answers this POST twice on one connection (200, then 204): fetch reads the first.
      reply = await this.api.post("engines", { [path]: on }, { urgent: true });
    } catch (_) {
      say(`Engine ${path} not switched: the host did not answer`, "error");
      return;
    }
    if (reply.ok) {
      this.engines.get(path).enabled = on;
      this.store();
      say(`Engine ${path} switched ${on ? "on" : "off"}${path === "debug" && !on ? " (this resumes the simulation)" : ""}`,
        "done");
      this.pending = true;
      this.wake && this.wake();
    } else {
      say(`Engine ${path} not switched: ${reply.error}`, "error");
    }
    this.render();
  }

  forget(path) {
    this.engines.delete(path);
    this.store();
    this.render();
  }

  suggest(path, data) {
    const options = new Set([...this.engines.keys(), "debug/entities", "debug/suspend"]);
    if (data !== null && typeof data === "object") {
      const keys = Array.isArray(data) ? data.map((_, i) => String(i)) : Object.keys(data);
      for (const key of keys.slice(0, 50)) {
        options.add(`${path}/${escapeKey(key)}`);
      }
    }
    this.suggestions.replaceChildren(...[...options].map((value) => {
      const option = document.createElement("option");
      option.value = value;
      return option;
    }));
  }

  render() {
    // Redrawn only when something changed: a switch replaced under the pointer would lose its click.
    const signature = JSON.stringify([...this.engines]);
    if (signature === this.drawn) {
      return;
    }
    this.drawn = signature;
    const items = [];
    for (const [path, state] of this.engines) {
      const li = document.createElement("li");
      li.dataset.engine = path;
      const name = document.createElement("span");
      name.className = "mono link";
      name.textContent = path;
      name.title = `Browse /api/${path}`;
      name.addEventListener("click", () => this.browse(path));
      const answer = document.createElement("span");
      answer.className = "answer";
      answer.textContent = state.answer;
      const label = document.createElement("label");
      label.className = "switch";
      const box = document.createElement("input");
      box.type = "checkbox";
      box.checked = state.enabled !== false;
      box.indeterminate = state.enabled === null;
      box.setAttribute("aria-label", `Engine ${path} on`);
      box.addEventListener("change", () => this.setEnabled(path, box.checked));
      const text = document.createElement("span");
      text.className = "answer";
      text.textContent = state.enabled === null ? "on/off not known" : state.enabled ? "on" : "off";
      label.append(box, text);
      li.append(name, answer, label);
      if (!builtIn.includes(path)) {
        const remove = document.createElement("button");
        remove.textContent = "×";
        remove.title = `Forget ${path} (the host keeps it)`;
        remove.addEventListener("click", () => this.forget(path));
        li.append(remove);
      }
      items.push(li);
    }
    this.list.replaceChildren(...items);
  }

  store() {
    const paths = [...this.engines.keys()].filter((path) => !builtIn.includes(path));
    const enabled = {};
    for (const [path, state] of this.engines) {
      if (state.enabled !== null) {
        enabled[path] = state.enabled;
      }
    }
    keep("engines", { paths, enabled });
  }
}

function clean(path) {
  return String(path).trim().replace(/^\/+/, "").replace(/^api\//, "").replace(/\/+$/, "");
}

function load() {
  const saved = stored("engines", {});
  return {
    paths: Array.isArray(saved.paths) ? saved.paths.filter((p) => typeof p === "string" && p) : [],
    enabled: saved.enabled && typeof saved.enabled === "object" ? saved.enabled : {},
  };
}
