// The entities of the debugger with each one's state and top location, and the selection, kept in the
// address. Polls the list now and then, and the top frames of a few entities at each turn.
//   const entities = new EntitiesView(api, model, urlState);  await entities.poll(turn);

const topsPerTurn = 8;      // so that a host with thousands of entities costs the same as the demo
const listEveryTurns = 6;   // the list itself changes rarely

export class EntitiesView {
  constructor(api, model, urlState) {
    this.api = api;
    this.model = model;
    this.urlState = urlState;
    this.list = document.getElementById("entity-list");
    this.filter = document.getElementById("entity-filter");
    this.count = document.getElementById("entity-count");
    this.next = 0;
    this.listed = false;
    this.items = new Map(); // entity -> its list item
    const wanted = urlState.get("entity");
    if (wanted !== null && /^\d+$/.test(wanted)) {
      model.select(Number(wanted));
    }
    model.on("entities", () => this.render());
    this.filter.addEventListener("input", () => this.render());
    this.list.addEventListener("click", (event) => {
      const item = event.target.closest("li[data-entity]");
      if (item) {
        this.choose(Number(item.dataset.entity));
      }
    });
    this.list.tabIndex = 0;
    this.list.addEventListener("keydown", (event) => this.onKey(event));
  }

  choose(entity) {
    this.model.select(entity);
    this.urlState.set({ entity });
  }

  onKey(event) {
    if (event.key !== "ArrowDown" && event.key !== "ArrowUp") {
      return;
    }
    const shown = [...this.list.querySelectorAll("li[data-entity]")].map((li) => Number(li.dataset.entity));
    if (shown.length === 0) {
      return;
    }
    const at = shown.indexOf(this.model.selected);
    const step = event.key === "ArrowDown" ? 1 : -1;
    const next = at < 0 ? 0 : Math.max(0, Math.min(shown.length - 1, at + step));
    this.choose(shown[next]);
    event.preventDefault();
  }

  async poll(turn) {
    if (!this.listed || turn % listEveryTurns === 0) {
      const reply = await this.api.get("debug/entities");
      if (reply.ok && Array.isArray(reply.data)) {
        this.model.setEntities(reply.data.map((e) => e.index).filter(Number.isInteger));
        this.listed = true;
      }
    }
    const ids = this.model.entities;
    const count = Math.min(topsPerTurn, ids.length);
    for (let i = 0; i < count; ++i) {
      const entity = ids[(this.next + i) % ids.length];
      if (entity === this.model.selected) {
        continue; // the stack view reads its whole stack anyway
      }
      const reply = await this.api.get(`debug/entities/${entity}`);
      if (reply.ok && reply.data && Array.isArray(reply.data.contexts)) {
        const frames = reply.data.contexts;
        this.model.setTop(entity, frames.length > 0 ? frames[frames.length - 1].location : "");
        for (const frame of frames) {
          this.model.addLocation(frame.location);
        }
      }
    }
    this.next = ids.length === 0 ? 0 : (this.next + count) % ids.length;
  }

  // Items are kept and updated in place: a list redrawn under the pointer would lose clicks.
  render() {
    const words = this.filter.value.trim().toLowerCase();
    const items = [];
    for (const entity of this.model.entities) {
      const state = this.model.entityState(entity);
      const top = this.model.tops.get(entity) || "";
      if (words && !`${entity} ${state} ${top}`.toLowerCase().includes(words)) {
        continue;
      }
      let li = this.items.get(entity);
      if (!li) {
        li = document.createElement("li");
        li.dataset.entity = entity;
        li.setAttribute("role", "option");
        const id = document.createElement("span");
        id.className = "entity-id";
        id.textContent = entity;
        const badge = document.createElement("span");
        badge.className = "state";
        const where = document.createElement("span");
        where.className = "entity-loc";
        li.append(id, badge, where);
        this.items.set(entity, li);
      }
      const [, badge, where] = li.children;
      li.setAttribute("aria-selected", entity === this.model.selected ? "true" : "false");
      if (badge.dataset.state !== state) {
        badge.dataset.state = state;
        badge.textContent = state;
      }
      if (where.title !== top) {
        where.textContent = shortLocation(top);
        where.title = top;
      }
      items.push(li);
    }
    const same = items.length === this.list.children.length && items.every((li, i) => this.list.children[i] === li);
    if (!same) {
      this.list.replaceChildren(...items);
    }
    const total = this.model.entities.length;
    this.count.textContent = items.length === total ? `${total}` : `${items.length} of ${total}`;
  }
}

// The part of a location a person tells apart at a glance: forager.behavior#seek of tov:agents/...
export function shortLocation(location) {
  const slash = location.lastIndexOf("/");
  return slash >= 0 ? location.slice(slash + 1) : location;
}
