// Watches: numbers picked in a resource or a frame, read at every turn and plotted over time on a
// canvas. A resource read by several watches is read once a turn.
//   const watch = new WatchView(api, { canRead: (path) => true });  watch.add(path, pointer, label);
//   await watch.poll();

import { resolvePointer } from "./tree.js";
import { say } from "./message.js";
import { keep, stored } from "./storage.js";

const points = 600;
const limit = 8;

export class WatchView {
  constructor(api, { canRead }) {
    this.api = api;
    this.canRead = canRead;
    this.element = document.getElementById("watch-list");
    this.watches = load().map((w) => ({ ...w, values: [] }));
    this.render();
    window.addEventListener("resize", () => this.drawAll());
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.drawAll());
  }

  add(path, pointer, label) {
    if (this.watches.some((w) => w.path === path && w.pointer === pointer)) {
      say(`${label} is already watched`, "info");
      return;
    }
    if (this.watches.length >= limit) {
      say(`At most ${limit} watches: remove one first`, "error");
      return;
    }
    this.watches.push({ path, pointer, label, values: [] });
    this.store();
    this.render();
    say(`Watching ${label}`, "done");
  }

  remove(watch) {
    this.watches = this.watches.filter((w) => w !== watch);
    this.store();
    this.render();
  }

  async poll() {
    const paths = [...new Set(this.watches.map((w) => w.path))].filter((path) => this.canRead(path));
    const now = Date.now();
    const since = this.api.commands;
    for (const path of paths) {
      const reply = await this.api.get(path, { since });
      if (reply.skipped) {
        return;
      }
      for (const watch of this.watches.filter((w) => w.path === path)) {
        const value = reply.ok ? resolvePointer(reply.data, watch.pointer) : undefined;
        watch.missing = typeof value !== "number";
        if (!watch.missing) {
          watch.values.push({ t: now, v: value });
          if (watch.values.length > points) {
            watch.values.splice(0, watch.values.length - points);
          }
        }
      }
    }
    this.drawAll();
  }

  render() {
    const cards = this.watches.map((watch) => {
      const card = document.createElement("section");
      card.className = "watch";
      const header = document.createElement("header");
      const name = document.createElement("span");
      name.className = "name";
      name.textContent = watch.label;
      name.title = `/api/${watch.path} ${watch.pointer}`;
      const value = document.createElement("span");
      value.className = "value";
      const remove = document.createElement("button");
      remove.textContent = "×";
      remove.title = "Stop watching";
      remove.addEventListener("click", () => this.remove(watch));
      header.append(name, value, remove);
      const canvas = document.createElement("canvas");
      canvas.setAttribute("role", "img");
      canvas.setAttribute("aria-label", `${watch.label} over time`);
      card.append(header, canvas);
      watch.card = { value, canvas };
      return card;
    });
    if (cards.length === 0) {
      const p = document.createElement("p");
      p.className = "note";
      p.textContent = "Nothing watched yet.";
      cards.push(p);
    }
    this.element.replaceChildren(...cards);
    this.drawAll();
  }

  drawAll() {
    for (const watch of this.watches) {
      if (watch.card) {
        const last = watch.values[watch.values.length - 1];
        watch.card.value.textContent = watch.missing ? "not there" : last ? format(last.v) : "…";
        draw(watch.card.canvas, watch.values);
      }
    }
  }

  store() {
    keep("watches", this.watches.map(({ path, pointer, label }) => ({ path, pointer, label })));
  }
}

function draw(canvas, values) {
  const ratio = window.devicePixelRatio || 1;
  const width = canvas.clientWidth;
  const height = canvas.clientHeight;
  if (width === 0 || height === 0) {
    return; // not on screen: drawn again when shown
  }
  if (canvas.width !== Math.round(width * ratio) || canvas.height !== Math.round(height * ratio)) {
    canvas.width = Math.round(width * ratio);
    canvas.height = Math.round(height * ratio);
  }
  const g = canvas.getContext("2d");
  g.setTransform(ratio, 0, 0, ratio, 0, 0);
  g.clearRect(0, 0, width, height);
  const style = getComputedStyle(document.documentElement);
  const muted = style.getPropertyValue("--muted").trim() || "#888";
  const accent = style.getPropertyValue("--accent").trim() || "#36f";
  const line = style.getPropertyValue("--line").trim() || "#ccc";
  g.font = "10px system-ui, sans-serif";
  if (values.length === 0) {
    g.fillStyle = muted;
    g.fillText("waiting for values…", 4, height / 2);
    return;
  }
  let low = Infinity;
  let high = -Infinity;
  for (const { v } of values) {
    low = Math.min(low, v);
    high = Math.max(high, v);
  }
  if (low === high) {
    low -= 1;
    high += 1;
  }
  const left = 44;
  const top = 6;
  const bottom = height - 14;
  const t0 = values[0].t;
  const t1 = Math.max(values[values.length - 1].t, t0 + 1000);
  const x = (t) => left + ((t - t0) / (t1 - t0)) * (width - left - 4);
  const y = (v) => bottom - ((v - low) / (high - low)) * (bottom - top);
  g.strokeStyle = line;
  g.lineWidth = 1;
  g.beginPath();
  g.moveTo(left, top);
  g.lineTo(left, bottom);
  g.lineTo(width - 4, bottom);
  g.stroke();
  g.fillStyle = muted;
  g.textAlign = "right";
  g.fillText(format(high), left - 4, top + 8);
  g.fillText(format(low), left - 4, bottom);
  g.textAlign = "left";
  g.fillText(`${Math.round((t1 - t0) / 1000)} s`, left, height - 2);
  g.strokeStyle = accent;
  g.lineWidth = 1.5;
  g.beginPath();
  values.forEach(({ t, v }, i) => (i === 0 ? g.moveTo(x(t), y(v)) : g.lineTo(x(t), y(v))));
  g.stroke();
}

function format(value) {
  return Number.isInteger(value) ? String(value) : value.toPrecision(6).replace(/\.?0+$/, "");
}

function load() {
  return stored("watches", [])
    .filter((w) => w && typeof w.path === "string" && typeof w.pointer === "string").slice(0, limit);
}
