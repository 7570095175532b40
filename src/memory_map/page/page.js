// The page from its head to its last table.
const budgetOf = (area) =>
    map.budgets.filter((budget) => budget.class === area.name);
const owned = (name) => make('span', {}, swatch(name), named(name));

function fillHead() {
  const {name, generation, version, pages} = map.image;
  const title = name === '' ? 'Memory map' : printable(name);
  place('name').textContent = title;
  document.title = `${title}: memory map`;
  place('facts').textContent = [
    generation && `generation ${generation}`,
    version && `base firmware ${version}`,
    `${plural(pages, 'page', 'pages')} of contents (${room(pages * PAGE)})`,
    map.baseline && `compared with ${printable(map.baseline.path)}`,
  ].filter(Boolean).join(' \u00b7 ');
}

function fillContents() {
  for (const section of document.querySelectorAll('main > section')) {
    if (section.hidden) continue;
    const title = section.querySelector('h2').textContent;
    place('contents').append(make('li', {},
        make('a', {href: `#${section.id}`}, title)));
  }
}

function card(area) {
  const card = make('li', {},
      make('h3', {}, named(area.name),
           make('span', {class: 'full'}, percent(area.used, area.size),
                make('small', {}, ' full'))),
      fillBar(sharesOf(area), area.size),
      make('p', {}, `${room(area.used)} used, ${room(area.free)} free of ` +
                    room(area.size)));
  const note = (text, look = 'hint') =>
      card.append(make('p', {class: look}, text));
  if (area.hw_buf !== 0) {
    note(`${room(area.hw_buf)} of the free room are the hardware buffer`);
  }
  const change = map.baseline?.classes.find((row) => row.name === area.name);
  if (change) {
    note(`${signed(change.change)} bytes since the baseline`,
         change.change > 0 ? 'grew' : 'shrank');
  }
  for (const budget of budgetOf(area)) {
    if (budget.over > 0) {
      note(`Over its budget by ${plural(budget.over, 'byte', 'bytes')}`, 'bad');
    } else {
      note(`${room(budget.limit - budget.used)} below its budget`);
    }
  }
  return card;
}

const cost = (module) => module.gaps + module.padding;
const saved = (module) => module.pages - module.packed_pages;

function fillMemory() {
  place('cards').append(...map.classes.map(card));
  if (map.classes.length === 0) {
    place('cards').append(make('li', {}, 'The definition has no memory class.'));
  }
  const tile = (id, count, text) => place('tiles').append(make('li', {},
      make('strong', {}, count), make('a', {href: `#${id}`}, text)));
  const lost = sum(inImage, cost);
  tile('pages', room(lost), 'lost to page alignment and gaps' +
       (lost === 0 ? '' : `, ${percent(lost, sum(inImage, total))}`));
  if (map.baseline) {
    tile('changes',
         signed(sum(map.baseline.classes, (row) => row.change)) + ' bytes',
         'in all classes since the baseline');
  }
  tile('left-out', number(map.rows.left_out), 'sections in no group');
  if (map.classes.length > 0) {
    tile('outside', number(map.rows.outside_classes),
         'sections outside the classes');
  }
  tile('overlaps', number(map.rows.overlaps) + (map.overlaps_cut ? '+' : ''),
       'overlaps of sections');
}

function fillChanges() {
  if (!map.baseline) return;
  const {changes, classes, modules} = map.baseline;
  place('changes').hidden = false;
  place('changes-text').textContent = changes.length === 0 ?
      'No size differs.' : 'What grew most comes first, what shrank behind it.';
  const columns = (...more) => [
    {label: 'Name', kind: 'name', value: (row) => row.name},
    {label: 'Change', kind: 'change', value: (row) => row.change},
    {label: 'Old', kind: 'number', value: (row) => row.old},
    {label: 'New', kind: 'number', value: (row) => row.new},
    ...more,
  ];
  const part = columns(
      {label: 'Section', kind: 'name', value: (row) => row.section ?? row.name},
      {label: 'Module', kind: 'name', value: (row) => row.module,
       show: (row) => row.module ? owned(row.module) : '(left out)'});
  part[0].show = (row) => row.section === null ?
      '(bytes without a symbol)' : named(row.name);
  if (changes.length > 0) {
    addTable(place('changes'), {columns: part, rows: changes,
                                all: map.rows.changes, what: 'changes'});
  }
  for (const [rows, title, what] of [
    [classes, 'Memory classes', 'classes that changed'],
    [modules, 'Modules, with gaps and padding', 'modules that changed'],
  ]) {
    if (rows.length === 0) continue;
    place('changes').append(make('h3', {}, title));
    addTable(place('changes'), {columns: columns(), rows, what});
  }
}

function fillBudgets() {
  if (map.budgets.length === 0) return;
  place('budgets').hidden = false;
  addTable(place('budgets'), {what: 'budgets', rows: map.budgets, columns: [
    {label: 'Class', kind: 'name', value: (row) => row.class},
    {label: 'Budget', kind: 'number', value: (row) => row.limit},
    {label: 'Used', kind: 'number', value: (row) => row.used},
    {label: 'Left', kind: 'number', value: (row) => row.limit - row.used,
     show: (row) => row.over === 0 ? number(row.limit - row.used) :
         make('span', {class: 'bad'}, `over by ${number(row.over)}`)},
  ]});
}

function fillBars() {
  const legend = place('legend');
  const add = (look, text) =>
      legend.append(make('li', {}, make('span', {}, look, named(text))));
  const seen = new Set(sections.map((section) => section.module));
  for (const name of owners.keys()) if (seen.has(name)) add(swatch(name), name);
  for (const name of seen) if (!owners.has(name)) add(swatch(name), name);
  if (map.classes.some((area) => area.hw_buf > 0)) {
    add(swatch('hw_buf'), 'hardware buffer');
  }
  add(swatch(null), 'gap');
  add(make('span', {class: 'swatch free', 'aria-hidden': 'true'}), 'free');
  const slots = Math.max(50, Math.min(400, 6000 / map.classes.length));
  place('bars').append(...map.classes.map((area) => classBar(area, slots)));
  place('where').hidden = map.classes.length === 0;
}

function fillPages() {
  const lost = sum(inImage, cost);
  const pages = sum(inImage, (module) => module.pages);
  const less = sum(inImage, saved);
  place('pages-text').textContent = pages === 0 ? 'Nothing yet.' :
      `Padding to the end of pages takes ` +
      `${plural(sum(inImage, (m) => m.padding), 'byte', 'bytes')}, gaps ` +
      `between sections ${plural(sum(inImage, (m) => m.gaps), 'byte', 'bytes')}` +
      `: ${percent(lost, sum(inImage, total))} of what the modules take. ` +
      (less === 0 ? 'Without the gaps, no page less would be needed.' :
          `Without the gaps, ${number(less)} of ${number(pages)} pages ` +
          `(${room(less * PAGE)}) would be saved.`) +
      (lost === 0 ? '' : ' Hatched is what each module loses:');
  const most = [...inImage].sort((a, b) => cost(b) - cost(a))
      .filter((module) => cost(module) > 0).slice(0, 12);
  const widest = Math.max(1, ...most.map(total));
  for (const module of most) {
    place('costs').append(owned(module.name),
        fillBar([[module.name, total(module) - cost(module)],
                 [null, cost(module)]], widest),
        make('span', {}, `${number(cost(module))} of ${number(total(module))}`));
  }
  const {cells, each} = cellsOf(map.groups, 1000);
  place('strip-text').textContent =
      `Each box ${each === 1 ? 'is one page' : `stands for ${each} pages`} of ` +
      `${number(PAGE)} bytes, filled as far as it is used; what is hatched are ` +
      'gaps and padding.';
  place('strip').append(...pageStrip(cells));
  if (cells.length === 0) place('strip-text').textContent = 'It has none.';
}

function fillModules() {
  const all = sum(inImage, total);
  const count = (label, value) => ({label, kind: 'number', value});
  const columns = [
    {label: 'Module', kind: 'name', value: (row) => row.name,
     show: (row) => make('span', {}, swatch(row.name), named(row.name),
                         row.built_in ? ' (built in)' : '')},
    ...['text', 'rodata', 'bss', 'gaps', 'padding'].map(
        (key) => count(key[0].toUpperCase() + key.slice(1), (row) => row[key])),
    count('Total', total),
    {label: 'Share', kind: 'number', value: total,
     show: (row) => row.built_in ? '' : percent(total(row), all)},
    count('Pages', (row) => row.pages),
    count('Pages to save', saved),
    {label: 'UUID', kind: 'name', value: (row) => row.uuid,
     show: (row) => make('span', {class: 'mono'}, printable(row.uuid))},
  ];
  const foot = columns.map((column, i) =>
      i === 0 ? make('th', {scope: 'row'}, 'All') :
      make('td', {class: 'number'}, column.kind !== 'number' ? '' :
          column.label === 'Share' ? '' : number(sum(inImage, column.value))));
  addTable(place('modules'), {columns, foot, rows: map.modules,
                              sorted: [6, 'descending'], what: 'modules'});
  if (inImage.length < map.modules.length) {
    place('modules').append(make('p', {class: 'note'}, 'A built-in module ' +
        'is counted again in the one that carries it, so the sums leave it out.'));
  }
}

const COLUMN = {
  name: {label: 'Section', kind: 'name', value: (row) => row.name},
  module: {label: 'Module', kind: 'name', value: (row) => row.module,
           show: (row) => owned(row.module)},
  address: {label: 'Address', kind: 'hex', value: (row) => row.address},
  size: {label: 'Size', kind: 'number', value: (row) => row.size},
};

function fillOddities() {
  addTable(place('left-out'), {
    what: 'left-out sections', rows: map.left_out, all: map.rows.left_out,
    sorted: [2, 'descending'],
    columns: [{...COLUMN.name, value: (row) => row.section}, COLUMN.address,
              COLUMN.size,
              {label: 'ELF', kind: 'name', value: (row) => row.elf}],
  });
  addTable(place('outside'), {
    what: 'outside sections', rows: map.outside_classes,
    all: map.rows.outside_classes, sorted: [2, 'ascending'],
    columns: [COLUMN.name, COLUMN.module, COLUMN.address, COLUMN.size,
              {label: 'Outside', kind: 'number', value: (row) => row.outside}],
  });
  const of = (at, key) => (row) => row.sections[at][key];
  addTable(place('overlaps'), {
    what: 'overlaps', rows: map.overlaps, all: map.rows.overlaps,
    columns: [
      {...COLUMN.name, value: of(0, 'name')},
      {...COLUMN.module, value: of(0, 'module'),
       show: (row) => owned(row.sections[0].module)},
      {...COLUMN.name, label: 'And section', value: of(1, 'name')},
      {...COLUMN.module, label: 'Of module', value: of(1, 'module'),
       show: (row) => owned(row.sections[1].module)},
      COLUMN.address, COLUMN.size,
    ],
  });
}

function fillTables() {
  addTable(place('sections'), {
    what: 'sections', rows: sections, sorted: [3, 'descending'],
    columns: [COLUMN.name, COLUMN.module, COLUMN.address, COLUMN.size,
              {label: 'Class', kind: 'name',
               value: (row) => row.classes.join(', ') || '(none)'}],
  });
  addTable(place('symbols'), {
    what: 'symbols', rows: map.symbols, all: map.rows.symbols,
    sorted: [4, 'descending'],
    columns: [
      {label: 'Symbol', kind: 'name', value: (row) => row.name},
      {...COLUMN.name, value: (row) => row.section},
      {...COLUMN.module, show: (row) =>
          row.module === null ? '(left out)' : owned(row.module)},
      COLUMN.address, COLUMN.size,
    ],
  });
}

fillHead();
fillMemory();
fillChanges();
fillBudgets();
fillBars();
fillPages();
fillModules();
fillOddities();
fillTables();
fillContents();
