'use strict';
// The data and what everything else asks of them. Names come from files and
// may hold anything: they reach the page as text alone, never as HTML.
const map = JSON.parse(document.getElementById('map').textContent);
const PAGE = 4096;

const grouped = new Intl.NumberFormat('en');
const number = (value) => grouped.format(value);
const hex = (value) => '0x' + value.toString(16).padStart(8, '0');
const signed = (value) => (value > 0 ? '+' : value < 0 ? '\u2212' : '') +
    number(Math.abs(value));
const plural = (count, one, many) =>
    `${number(count)} ${count === 1 ? one : many}`;
// The same of a phrase that begins with the noun, or ends with it.
const counted = (count, phrase) =>
    plural(count, phrase.replace(/(ss)es\b|s\b/, '$1'), phrase);

// "10.3 KiB"; below one KiB in bytes.
function room(bytes) {
  const units = ['bytes', 'KiB', 'MiB', 'GiB'];
  let unit = 0;
  let value = bytes;
  for (; value >= 1024 && unit < 3; ++unit) value /= 1024;
  const digits = unit === 0 || Number.isInteger(value) ? 0 : 1;
  const shown = Math.min(value, 1023.9);  // 1023.98 KiB aren't 1024.0
  return `${shown.toFixed(digits)} ${bytes === 1 ? 'byte' : units[unit]}`;
}

// 0 % and 100 % are for what is empty and what is full.
function percent(part, whole) {
  if (whole === 0) return '\u2013';
  const share = 100 * part / whole;
  if (part > 0 && share < 0.1) return '< 0.1 %';
  return `${(part < whole ? Math.min(share, 99.9) : share).toFixed(1)} %`;
}

// Signs that would hide or turn a text around are shown as one sign each.
function printable(text) {
  return text.replace(
      /[\0-\x1f\x7f-\x9f\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]/g,
      '\ufffd');
}

// Makes an element: attributes, then texts and elements inside it.
function make(tag, attributes = {}, ...inside) {
  const element = document.createElement(tag);
  for (const [key, value] of Object.entries(attributes)) {
    element.setAttribute(key, value);
  }
  element.append(...inside);
  return element;
}

const place = (id) => document.getElementById(id);
const named = (text) => make('span', {class: 'name'}, printable(text));

// Every section once, by address: those of the classes and those outside.
const sections = (() => {
  const all = new Map();
  const add = (section, area) => {
    const key = `${section.address} ${section.name}`;
    if (!all.has(key)) all.set(key, {...section, classes: []});
    if (area) all.get(key).classes.push(area);
  };
  for (const area of map.classes) {
    for (const section of area.sections) add(section, area.name);
  }
  for (const section of map.outside_classes) add(section);
  return [...all.values()].sort((a, b) => a.address - b.address);
})();

const total = (module) => module.text + module.rodata + module.bss +
    module.gaps + module.padding;
const inImage = map.modules.filter((module) => !module.built_in);
const sum = (list, value) => list.reduce((all, row) => all + value(row), 0);

// Colours in the order of the definition, so that a module keeps its own from
// build to build: each colour plain, then with a pattern.
const COLOURS = 6;
const PATTERNS = 4;
const owners = (() => {
  const looks = new Map();
  for (const module of map.modules) {
    if (looks.has(module.name)) continue;
    const at = looks.size;
    looks.set(module.name, {
      colour: `var(--module-${at % COLOURS})`,
      pattern: `pattern-${Math.floor(at / COLOURS) % PATTERNS}`,
    });
  }
  return looks;
})();
const OTHER = {colour: 'var(--other)', pattern: 'pattern-0'};

// Gives an element the look of a module, a gap, or the hardware buffer.
function dress(element, owner) {
  if (owner === null) {
    element.classList.add('gap');
  } else if (owner === 'hw_buf' && !owners.has(owner)) {
    element.classList.add('hw_buf');
  } else {
    const look = owners.get(owner) ?? OTHER;
    element.style.backgroundColor = look.colour;
    element.classList.add(look.pattern);
  }
  return element;
}

const swatch = (owner) =>
    dress(make('span', {class: 'swatch', 'aria-hidden': 'true'}), owner);
