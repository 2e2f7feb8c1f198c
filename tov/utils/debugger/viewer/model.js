// What the page knows of the host, shared by the views: the run state, the entities with their top
// locations, the locations seen, and which entity is selected. Pollers write it; views listen.
//   model.on("entities", render);  model.update({ status: { suspended: true, entity: 1 } });
//   model.entityState(3)   // "running", "suspended" or "stepping"

class Model {
  constructor() {
    this.status = { suspended: false, entity: null, known: false };
    this.entities = [];
    this.tops = new Map();      // entity -> location of its top frame
    this.stopped = new Set();   // entities that events name as stopped since the host last ran
    this.stepping = null;       // entity whose step this page started and that has not stopped yet
    this.suspending = false;    // a suspend this page asked for, until something stops
    this.selected = null;
    this.locations = new Set(); // every location seen in a stack or an event, for completion
    this.listeners = new Map();
  }

  on(topic, listener) {
    if (!this.listeners.has(topic)) {
      this.listeners.set(topic, []);
    }
    this.listeners.get(topic).push(listener);
  }

  emit(topic) {
    for (const listener of this.listeners.get(topic) || []) {
      listener(this);
    }
  }

  setStatus(suspended, entity) {
    // 4294967295 is the host's "no entity": nothing stopped yet.
    const named = Number.isInteger(entity) && entity !== 4294967295 ? entity : null;
    const before = this.signature();
    if (suspended) {
      if (named !== null) {
        this.stopped.add(named);
      }
      // Requests reach the host one at a time, and a step answers only once the gate is open again:
      // a stop seen after it is the step's own.
      this.stepping = null;
      this.suspending = false;
    } else {
      this.stopped.clear();
    }
    this.status = { suspended, entity: named, known: true };
    if (this.signature() !== before) {
      this.emit("status");
      this.emit("entities");
    }
  }

  signature() {
    return JSON.stringify([this.status, [...this.stopped], this.stepping, this.suspending]);
  }

  // A stop told by an event (suspension or breakpoint): it names each entity when several stopped. The
  // event may be read before the state that shows the stop: it counts once the host shows it suspended,
  // and goes with the next state that shows it running.
  noteStop(entity) {
    if (this.stepping === null && !this.stopped.has(entity)) {
      this.stopped.add(entity);
      this.emit("entities");
    }
  }

  startStepping(entity) {
    this.stepping = entity;
    this.stopped.clear();
    this.status = { ...this.status, suspended: false };
    this.emit("status");
    this.emit("entities");
  }

  // Suspending arms a stop at the next frame change; nothing is stopped until a thread gets there.
  startSuspending() {
    if (!this.status.suspended) {
      this.suspending = true;
      this.emit("status");
    }
  }

  // After a resume: nothing this page armed is pending any more.
  clearArmed() {
    if (this.stepping !== null || this.suspending) {
      this.stepping = null;
      this.suspending = false;
      this.emit("status");
      this.emit("entities");
    }
  }

  setEntities(ids) {
    if (ids.join(",") !== this.entities.join(",")) {
      this.entities = ids;
      for (const id of [...this.tops.keys()]) {
        if (!ids.includes(id)) {
          this.tops.delete(id);
        }
      }
      this.emit("entities");
    }
  }

  setTop(entity, location) {
    this.addLocation(location);
    if (this.tops.get(entity) !== location) {
      this.tops.set(entity, location);
      this.emit("entities");
    }
  }

  addLocation(location) {
    if (typeof location === "string" && location !== "" && !this.locations.has(location)) {
      this.locations.add(location);
      this.emit("locations");
    }
  }

  select(entity) {
    if (entity !== this.selected) {
      this.selected = entity;
      this.emit("selection");
      this.emit("entities");
    }
  }

  entityState(entity) {
    if (this.stepping === entity) {
      return "stepping";
    }
    if (this.status.suspended && this.stopped.has(entity)) {
      return "suspended";
    }
    return "running";
  }

  // The entity that step commands act on: the host's last stop.
  stoppedEntity() {
    return this.status.suspended ? this.status.entity : null;
  }
}

export const model = new Model();
