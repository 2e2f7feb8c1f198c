// Engines with their on/off switch, and a browser for any resource of any engine, shown as a tree that
// refreshes itself. The host lists its engines with each one's state (GET /api/engines), read every few
// seconds and after each switch. A host that answers that path with no list (an older one, behind the
// development server) leaves the page to what it knows itself: "debug" and "events", the engines learned
// from the paths a person browses or adds (kept per host), each switch as last set from here ("not
// known" until then).
//   const engines = new EnginesView(api, urlState, { onPick });  await engines.poll(visible);

import { JsonTree, escapeKey } from "./tree.js";
import { say } from "./message.js";
import { keep, stored } from "./storage.js";

const builtIn = ["debug", "events"];
const listEveryMs = 3000;

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
    // The page's own knowledge, for a host that lists no engines: path -> { enabled: true | false | null
    // (not known) }.
    this.known = new Map();
    for (const path of [...builtIn, ...saved.paths]) {
      this.known.set(path, { enabled: saved.enabled[path] ?? null });
    }
    this.listed = null;         // the host's list, path -> { enabled }; null while it gives none
    this.hostLists = null;      // not asked yet; then whether the last answer was a list
    this.listedAt = 0;
    this.answers = new Map();   // path -> whether its root answered, as last seen
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

  // The engines shown: the host's own list when it gives one.
  get engines() {
    return this.listed || (this.hostLists === false ? this.known : new Map());
  }

  learn(path) {
    const first = path.split("/")[0];
    if (first && !this.listed && !this.engineOf(path)) {
      this.known.set(first, { enabled: null });
      this.store();
      this.render();
    }
  }

  // Reads the host's list; any answer but a list of engines falls back to what the page knows.
  async readList(options = {}) {
    const reply = await this.api.get("engines", options);
    this.listedAt = Date.now();
    const valid = reply.ok && Array.isArray(reply.data) ? reply.data.filter((engine) => engine !== null &&
      typeof engine === "object" && typeof engine.path === "string" && engine.path !== "" &&
      typeof engine.enabled === "boolean") : null;
    this.listed = valid && new Map(valid.map((engine) => [engine.path, { enabled: engine.enabled }]));
    this.hostLists = this.listed !== null;
    this.addForm.hidden = this.hostLists;
    this.render();
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

  // Whether each engine the page knows of answers at its root, once a connection: the host does not
  // list them.
  async probe() {
    for (const path of this.known.keys()) {
      const reply = await this.api.get(path);
      this.answers.set(path, reply.ok ? "answers" : reply.error);
    }
    this.unprobed = false;
    this.render();
  }

  // A server that comes back may be another host: what was known of its engines is asked again.
  reconnected() {
    this.unprobed = true;
    this.listedAt = 0;
  }

  async poll(visible) {
    if (Date.now() - this.listedAt >= listEveryMs) {
      await this.readList();
    }
    if (this.hostLists === false && this.unprobed) {
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
    if (engine) {
      this.answers.set(engine, reply.ok ? "answers" : reply.error);
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
    let now = on;
    if (this.hostLists) {
      // What the host reports after the switch, not the click, is what the switch shows.
      try {
        await this.readList({ urgent: true });
      } catch (_) {
        // The host went: the next turn says so.
      }
      now = this.listed ? this.listed.get(path)?.enabled : undefined;
    } else if (reply.ok && this.known.has(path)) {
      this.known.get(path).enabled = on;
      this.store();
    }
    if (!reply.ok) {
      say(`Engine ${path} not switched: ${reply.error}`, "error");
    } else if (now === on) {
      say(`Engine ${path} switched ${on ? "on" : "off"}${path === "debug" && !on ? " (this resumes the simulation)" : ""}`,
        "done");
    } else {
      say(`Engine ${path} not switched: the host reports it ${now === undefined ? "gone" : now ? "on" : "off"}`,
        "error");
    }
    this.pending = true;
    this.wake && this.wake();
    this.drawn = null; // the switch shows the host's state even where a refused click left it changed
    this.render();
  }

  forget(path) {
    this.known.delete(path);
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
    const signature = JSON.stringify([this.hostLists, [...this.engines], [...this.answers]]);
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
      answer.textContent = this.answers.get(path) || "";
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
      if (!this.listed && !builtIn.includes(path)) {
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
    const paths = [...this.known.keys()].filter((path) => !builtIn.includes(path));
    const enabled = {};
    for (const [path, state] of this.known) {
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
