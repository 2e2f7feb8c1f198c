// What the page keeps in the browser between visits, per host: breakpoints, engines, watches. Storage
// may be refused (a private window, a full quota): the page then keeps them as long as it lives.
//   const items = stored("breakpoints", []);  keep("breakpoints", items);

const key = (name) => `tov-viewer-${name}:${location.host}`;

export function stored(name, fallback) {
  try {
    const value = JSON.parse(localStorage.getItem(key(name)));
    return value === null || typeof value !== typeof fallback || Array.isArray(value) !== Array.isArray(fallback)
      ? fallback : value;
  } catch (_) {
    return fallback;
  }
}

export function keep(name, value) {
  try {
    localStorage.setItem(key(name), JSON.stringify(value));
  } catch (_) {
    // Refused: see above.
  }
}
