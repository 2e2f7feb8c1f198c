// What the address keeps, so that a reload or a shared link comes back to the same place: the selected
// entity, the tool shown and the resource browsed, in the fragment (#entity=3&view=events&res=world),
// which never reaches the host.
//   urlState.get("entity");  urlState.set({ view: "events" });

export const urlState = {
  read() {
    return new URLSearchParams(location.hash.replace(/^#/, ""));
  },

  get(name) {
    return this.read().get(name);
  },

  set(values) {
    const params = this.read();
    for (const [name, value] of Object.entries(values)) {
      if (value === null || value === undefined || value === "") {
        params.delete(name);
      } else {
        params.set(name, String(value));
      }
    }
    const hash = params.toString();
    // replaceState: following the simulation must not fill the history with one entry a click.
    history.replaceState(null, "", hash ? `#${hash}` : location.pathname + location.search);
  },
};
