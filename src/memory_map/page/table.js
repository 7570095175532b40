// A table that can be sorted and filtered. The document holds the rows of one
// page at a time, so that it stays quick with any number of them.
const ROWS = 100;

// `columns`: {label, value(row), kind: 'name' | 'number' | 'hex' | 'change',
// show(row)}. `sorted`: [column, 'ascending' | 'descending'], or null for the
// order that the rows have. Yields a function that sets the filter.
function addTable(section, {columns, rows, all = rows.length, sorted = null,
                            foot = null, empty = 'None.', what}) {
  if (rows.length === 0) {
    section.append(make('p', {}, empty));
    return;
  }
  const keyOf = (column, row) => column.kind === 'name' ?
      printable(column.value(row) ?? '') : column.value(row);
  const keys = rows.map((row) => columns.map((column) => keyOf(column, row)));
  const words = keys.map((key) => columns.map((column, i) =>
      column.kind === 'hex' ? hex(key[i]) : String(key[i]))
      .join('\n').toLowerCase());
  let order = [...rows.keys()];
  let first = 0;

  const input = make('input', {type: 'search', size: 24});
  const status = make('p', {class: 'hint', role: 'status'});
  const heads = columns.map((column, i) => {
    const button = make('button', {type: 'button'}, column.label);
    button.addEventListener('click', () => sortBy(i));
    return make('th', {
      scope: 'col', class: column.kind === 'name' ? 'name' : 'number',
    }, button);
  });
  const body = make('tbody');
  const table = make('table', {},
      make('caption', {}, all > rows.length ?
          `${number(rows.length)} of ${number(all)} ${what}: the others are ` +
          'left out, so that the page stays small (map --json lists more)' :
          counted(all, what)),
      make('thead', {}, make('tr', {}, ...heads)), body);
  if (foot) table.append(make('tfoot', {}, make('tr', {}, ...foot)));
  const back = make('button', {type: 'button'}, 'Previous');
  const on = make('button', {type: 'button'}, 'Next');
  const pager = make('div', {class: 'pager'}, back, on);

  function cell(column, row, key, isFirst) {
    const shown = column.show ? column.show(row) :
        column.kind === 'name' ? key :
        column.kind === 'hex' ? hex(key) :
        column.kind === 'change' ? signed(key) : number(key);
    const element = isFirst ? make('th', {scope: 'row'}, shown) :
        make('td', {}, shown);
    element.classList.add(column.kind === 'name' ? 'name' : 'number');
    if (column.kind === 'hex') element.classList.add('mono');
    if (column.kind === 'change' && key !== 0) {
      element.classList.add(key > 0 ? 'grew' : 'shrank');
    }
    return element;
  }
  function draw() {
    body.replaceChildren(...order.slice(first, first + ROWS).map((at) =>
        make('tr', {}, ...columns.map((column, i) =>
            cell(column, rows[at], keys[at][i], i === 0)))));
    const last = Math.min(first + ROWS, order.length);
    status.textContent = order.length === 0 ? 'Nothing matches' :
        `Rows ${number(first + 1)} to ${number(last)} of ` +
        number(order.length) +
        (order.length < rows.length ? ` that match` : '');
    back.disabled = first === 0;
    on.disabled = last === order.length;
    pager.hidden = order.length <= ROWS;
  }
  function arrange() {
    const wanted = input.value.trim().toLowerCase();
    order = [...rows.keys()].filter((at) => words[at].includes(wanted));
    if (sorted) {
      const [column, direction] = sorted;
      const sign = direction === 'ascending' ? 1 : -1;
      order.sort((a, b) => {
        const x = keys[a][column];
        const y = keys[b][column];
        return x < y ? -sign : x > y ? sign : a - b;
      });
    }
    heads.forEach((head, i) => {
      if (sorted && sorted[0] === i) head.setAttribute('aria-sort', sorted[1]);
      else head.removeAttribute('aria-sort');
    });
    first = 0;
    draw();
  }
  // Names from the beginning, sizes from the largest on.
  function sortBy(column) {
    const isNumber = ['number', 'change'].includes(columns[column].kind);
    const usual = isNumber ? 'descending' : 'ascending';
    const other = isNumber ? 'ascending' : 'descending';
    const again = sorted && sorted[0] === column && sorted[1] === usual;
    sorted = [column, again ? other : usual];
    arrange();
  }
  input.addEventListener('input', arrange);
  back.addEventListener('click', () => { first -= ROWS; draw(); });
  on.addEventListener('click', () => { first += ROWS; draw(); });

  const tools = make('div', {class: 'tools'});
  if (rows.length > 5) {
    tools.append(make('label', {}, `Filter ${what}`, input), status);
  }
  const scroll = make('div', {class: 'scroll', tabindex: '0', role: 'region',
                              'aria-label': `Table of ${what}`}, table);
  section.append(tools, scroll, pager);
  arrange();
}
