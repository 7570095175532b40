// Bars of memory. A bar has a part for each section that is wide enough to be
// seen; smaller neighbours share one, and coming closer takes it apart.

// What lies between two addresses, in order and without overlap: of sections
// that share addresses the first has them. A run without an owner is a gap
// between sections, or free room at the ends.
function runsOf(list, begin, end) {
  const runs = [];
  let at = begin;
  for (const section of list) {
    const from = Math.max(section.address, at);
    const to = Math.min(section.address + section.size, end);
    if (to <= from) continue;
    if (from > at) {
      runs.push({begin: at, end: from, free: runs.length === 0});
    }
    runs.push({begin: from, end: to, section});
    at = to;
  }
  if (end > at) runs.push({begin: at, end, free: true});
  return runs;
}

function withBuffer(area) {
  if (area.hw_buf === 0) return area.sections;
  const buffer = {...map.hw_buf, name: 'hw_buf', module: 'hw_buf'};
  return [...area.sections, buffer].sort((a, b) => a.address - b.address);
}

// Joins runs that are narrower than `least` to parts of several.
function partsOf(runs, begin, end, least) {
  const parts = [];
  let joined = null;
  for (const run of runs) {
    const from = Math.max(run.begin, begin);
    const to = Math.min(run.end, end);
    if (to <= from) continue;
    if (to - from >= least) {
      joined = null;
      parts.push({begin: from, end: to, runs: [run]});
    } else if (joined && to - joined.begin <= 2 * least) {
      joined.end = to;
      joined.runs.push(run);
    } else {
      joined = {begin: from, end: to, runs: [run]};
      parts.push(joined);
    }
  }
  return parts;
}

// Who has most of a part: a module, null for a gap, undefined for free room.
function mainOwner(part) {
  const bytes = new Map();
  for (const run of part.runs) {
    if (!run.section) continue;
    const owner = run.section.module;
    bytes.set(owner, (bytes.get(owner) ?? 0) + run.end - run.begin);
  }
  if (bytes.size === 0) return part.runs[0].free ? undefined : null;
  return [...bytes].reduce((most, one) => one[1] > most[1] ? one : most)[0];
}

function tellPart(part) {
  const held = part.runs.filter((run) => run.section);
  if (part.runs.length === 1) {
    const {section, free} = part.runs[0];
    if (section) {
      return `${printable(section.name)}, ${printable(section.module)}, ` +
          `${hex(section.address)}, ${plural(section.size, 'byte', 'bytes')}`;
    }
    return `${free ? 'free room' : 'gap'}, ${hex(part.begin)}, ` +
        plural(part.end - part.begin, 'byte', 'bytes');
  }
  const modules = [...new Set(held.map((run) => run.section.module))];
  const names = modules.slice(0, 3).map(printable).join(', ') +
      (modules.length > 3 ? ` and ${modules.length - 3} more` : '');
  return `${plural(held.length, 'section', 'sections')} of ${names}, ` +
      `${hex(part.begin)} to ${hex(part.end - 1)}, ` +
      `${plural(sum(held, (run) => run.end - run.begin), 'byte', 'bytes')}`;
}

// One stop of the Tab key for many buttons; arrows, Home and End move in it.
function roveFocus(box, buttons) {
  let at = 0;
  buttons.forEach((button, i) => {
    button.tabIndex = i === 0 ? 0 : -1;
    button.addEventListener('focus', () => {
      buttons[at].tabIndex = -1;
      at = i;
      button.tabIndex = 0;
    });
  });
  box.onkeydown = (event) => {
    const steps = {ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1,
                   PageDown: 10, PageUp: -10, Home: -Infinity, End: Infinity};
    if (!(event.key in steps) || buttons.length === 0) return;
    const next = at + steps[event.key];
    buttons[Math.max(0, Math.min(buttons.length - 1, next))].focus();
    event.preventDefault();
  };
}

function tellInto(button, readout, text) {
  button.setAttribute('aria-label', text);
  for (const event of ['focus', 'pointerenter']) {
    button.addEventListener(event, () => readout.textContent = text);
  }
}

// A class as a bar by addresses, in `slots` of which each can be seen.
function classBar(area, slots) {
  const whole = {begin: area.base, end: area.base + area.size};
  const runs = runsOf(withBuffer(area), whole.begin, whole.end);
  const box = make('div', {
    class: 'bar', role: 'group',
    'aria-label': `${printable(area.name)} by address`,
  });
  const readout = make('p', {class: 'readout'});
  const ends = [make('span', {class: 'mono'}), make('span', {class: 'mono'})];
  const views = [];

  const draw = ({begin, end}) => {
    const size = end - begin;
    const buttons = partsOf(runs, begin, end, size / slots).map((part) => {
      const button = make('button', {type: 'button'});
      const owner = mainOwner(part);
      const width = (part.end - part.begin) / size;
      button.style.left = `${100 * (part.begin - begin) / size}%`;
      button.style.width = `${100 * width}%`;
      if (owner !== undefined) dress(button, owner);
      // Where there is room for it, for certain.
      if (owner && width > 0.02 + 0.009 * owner.length) {
        button.append(make('span', {class: 'tag'}, printable(owner)));
      }
      if (width < 2 / slots) button.classList.add('thin');
      tellInto(button, readout, tellPart(part));
      button.addEventListener('click', () => closer(part, {begin, end}));
      return button;
    });
    box.replaceChildren(...buttons);
    roveFocus(box, buttons);
    ends[0].textContent = hex(begin);
    ends[1].textContent = hex(end);
    readout.textContent = views.length === 0 ? '' :
        `${room(size)} from ${hex(begin)}; Escape goes back`;
  };
  const closer = (part, view) => {
    const size = part.end - part.begin;
    const edge = part.runs.length > 1 ? 0 : size;
    const next = {
      begin: Math.max(whole.begin, part.begin - edge),
      end: Math.min(whole.end, part.end + edge),
    };
    if (next.end - next.begin >= view.end - view.begin) return;
    views.push(view);
    draw(next);
    box.firstElementChild.focus();
  };
  box.addEventListener('keydown', (event) => {
    if (event.key !== 'Escape' || views.length === 0) return;
    draw(views.pop());
    box.firstElementChild.focus();
  });
  draw(whole);
  const figures = `${number(area.used)} used, ${number(area.free)} free of ` +
      `${plural(area.size, 'byte', 'bytes')}, ` +
      plural(area.sections.length, 'section', 'sections');
  return make('div', {class: 'class-bar'},
              make('h3', {}, named(area.name), make('span', {class: 'figures'}, figures)),
              box,
              make('div', {class: 'ends'}, ends[0], readout, ends[1]));
}

// A bar of shares: [owner or class, bytes] of a whole, the rest empty.
function fillBar(shares, whole) {
  const bar = make('div', {class: 'fill', 'aria-hidden': 'true'});
  for (const [owner, bytes] of shares) {
    if (bytes === 0) continue;
    const part = dress(make('i'), owner);
    part.style.width = `${100 * bytes / whole}%`;
    bar.append(part);
  }
  return bar;
}

// What each owner has of a class, most first.
function sharesOf(area) {
  const shares = new Map();
  const end = area.base + area.size;
  for (const run of runsOf(area.sections, area.base, end)) {
    if (!run.section) continue;
    const owner = run.section.module;
    shares.set(owner, (shares.get(owner) ?? 0) + run.end - run.begin);
  }
  const ordered = [...shares].sort((a, b) => b[1] - a[1]);
  if (area.hw_buf !== 0) ordered.push(['hw_buf', area.hw_buf]);
  return ordered;
}

// The pages of the image in at most `most` cells of as many pages each.
function cellsOf(groups, most) {
  const pages = sum(groups, (group) => group.pages);
  const each = Math.max(1, Math.ceil(pages / most));
  const cells = [];
  let first = 0;  // page of the group in the image
  for (const group of groups) {
    let next = 0;  // of the stretches that nothing uses
    for (let page = 0; page < group.pages;) {
      const cell = Math.floor((first + page) / each);
      const to = Math.min(group.pages, (cell + 1) * each - first);
      const begin = group.address + page * PAGE;
      const end = group.address + to * PAGE;
      let unused = 0;
      for (; next < group.unused.length; ++next) {
        const {address, size} = group.unused[next];
        if (address >= end) break;
        unused += Math.min(end, address + size) - Math.max(begin, address);
        if (address + size > end) break;
      }
      cells[cell] ??= {first: first + page, pages: 0, unused: 0, parts: []};
      cells[cell].pages += to - page;
      cells[cell].unused += unused;
      cells[cell].parts.push({group, pages: to - page});
      page = to;
    }
    first += group.pages;
  }
  return {cells, each};
}

function pageStrip(cells) {
  const readout = make('p', {class: 'readout'});
  const box = make('div', {
    role: 'group', 'aria-label': 'The pages of the image, in order',
  });
  const buttons = cells.map((cell) => {
    const {group} =
        cell.parts.reduce((most, one) => one.pages > most.pages ? one : most);
    const used = 1 - cell.unused / (cell.pages * PAGE);
    const least = used > 0 ? 12 : 0;  // so that one sees whose it is
    const button = make('button', {type: 'button', class: 'pad'});
    const fill = dress(make('i'), group.module);
    fill.style.height = `${Math.max(least, 100 * used)}%`;
    button.append(fill);
    const others = cell.parts.length - 1;
    const pages = cell.pages === 1 ? `page ${number(cell.first)}` :
        `pages ${number(cell.first)} to ${number(cell.first + cell.pages - 1)}`;
    tellInto(button, readout,
             `${pages}, ${printable(group.module)} ${group.kind}` +
             (others > 0 ? ` and ${plural(others, 'group', 'groups')} more` : '') +
             `, ${plural(cell.unused, 'byte', 'bytes')} unused`);
    return button;
  });
  box.append(...buttons);
  roveFocus(box, buttons);
  return [box, readout];
}
