'use strict';

// The tables show everything that the page knows, a page of rows at a time: a path may have more
// names than a browser can lay out. Without script the page has the first rows of each.

const data = JSON.parse(document.getElementById('data').textContent);
const ROWS_SHOWN = 50;
const collator = new Intl.Collator('en', {numeric: true});

function element(tag, attributes = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
  made.append(...children);
  return made;
}

const name = text => element('bdi', {class: 'name'}, text);
const number = value => element('td', {class: 'number'}, value.toLocaleString('en'));

class Table {
  // rows: objects with a value for each column that sorts and a lower-case `text` to look in.
  // render(row): the <tr>.
  constructor(section, rows, render) {
    this.rows = rows;
    this.render = render;
    this.shown = rows;
    this.first = 0;
    this.sort = {key: '', descending: false};
    this.body = section.querySelector('tbody');
    this.headings = [...section.querySelectorAll('th[data-sort]')];
    this.filters = [...section.querySelectorAll('[data-filter]')];
    for (const heading of this.headings) this.makeButton(heading);
    for (const filter of this.filters) filter.addEventListener('input', () => this.update());
    section.querySelector('.controls').hidden = false;
    this.makePager(section.querySelector('.pager'));
  }

  makeButton(heading) {
    const button = element('button', {type: 'button'}, heading.textContent);
    heading.replaceChildren(button);
    button.addEventListener('click', () => {
      const again = this.sort.key === heading.dataset.sort;
      // Numbers are looked at from the largest, names from the first.
      const descending = again ? !this.sort.descending : heading.classList.contains('number');
      this.sortBy(heading.dataset.sort, descending);
    });
  }

  makePager(pager) {
    this.status = element('span', {role: 'status'});
    this.previous = element('button', {type: 'button'}, 'Previous');
    this.next = element('button', {type: 'button'}, 'Next');
    this.previous.addEventListener('click', () => this.show(this.first - ROWS_SHOWN));
    this.next.addEventListener('click', () => this.show(this.first + ROWS_SHOWN));
    pager.append(this.previous, this.next, this.status);
    pager.hidden = false;
  }

  sortBy(key, descending) {
    this.sort = {key, descending};
    for (const heading of this.headings) {
      heading.removeAttribute('aria-sort');
      if (heading.dataset.sort !== key) continue;
      heading.setAttribute('aria-sort', descending ? 'descending' : 'ascending');
    }
    const sign = descending ? -1 : 1;
    const texts = this.rows.some(row => typeof row[key] === 'string');
    const compare = texts ? collator.compare : (a, b) => a - b;
    this.rows.sort((a, b) => sign * compare(a[key], b[key]) || a.order - b.order);
    this.update();
  }

  update() {
    const wanted = this.filters.map(filter => [filter.dataset.filter, filter.value])
      .filter(([, value]) => value !== '')
      .map(([key, value]) => [key, key === 'text' ? value.toLowerCase() : value]);
    this.shown = this.rows.filter(row => wanted.every(
      ([key, value]) => key === 'text' ? row.text.includes(value) : row[key].includes(value)));
    this.show(0);
  }

  show(first) {
    this.first = Math.max(0, first);
    const end = Math.min(this.first + ROWS_SHOWN, this.shown.length);
    this.body.replaceChildren(...this.shown.slice(this.first, end).map(this.render));
    this.previous.disabled = this.first === 0;
    this.next.disabled = end === this.shown.length;
    const count = value => value.toLocaleString('en');
    this.status.textContent = this.shown.length === 0 ? 'None' :
      `${count(this.first + 1)} to ${count(end)} of ${count(this.shown.length)}`;
  }

  // Brings a row into view, whatever is filtered.
  reveal(row) {
    for (const filter of this.filters) filter.value = '';
    this.update();
    const place = this.shown.indexOf(row);
    this.show(place - place % ROWS_SHOWN);
    const line = this.body.children[place % ROWS_SHOWN];
    line.classList.add('found');
    line.tabIndex = -1;
    line.focus({preventScroll: true});
    line.scrollIntoView({block: 'center'});
  }
}

const names = data.names.map(([label, places, kind, files], order) => {
  const full = files.map(([dir, file]) => data.folders[dir] + file);
  const text = [label, ...full].join('\n').toLowerCase();
  return {name: label, places, kind, files: full, order, text};
});

function nameRow(row) {
  const places = element('ol', {class: 'places'},
    ...row.files.map(file => element('li', {}, name(file))));
  const more = row.places - row.files.length;
  return element('tr', {}, element('th', {scope: 'row'}, name(row.name)), number(row.places),
    element('td', {}, row.kind),
    element('td', {}, places, more > 0 ? `and ${more.toLocaleString('en')} more` : ''));
}

const directories = data.directories.map(
  ([position, label, note, files, hidden, special, cost, source], order) => (
    {position, name: label, note, files, hidden, special, cost: cost ?? -1, source, order,
      text: label.toLowerCase()}));
const highestCost = directories.reduce((most, row) => Math.max(most, row.cost), 0) || 1;

function directoryRow(row) {
  const cost = element('td', {class: 'number cost',
    style: `--share:${Math.max(0, 100 * row.cost / highestCost).toFixed(1)}%`},
    row.cost < 0 ? '–' : row.cost.toFixed(3));
  const made = element('tr', {id: `d${row.order}`}, number(row.position),
    element('th', {scope: 'row'}, name(row.name)), number(row.files), number(row.hidden),
    number(row.special), cost);
  if (row.note) made.querySelector('th').append(' ', element('span', {class: 'note'}, row.note));
  if (row.source) made.append(element('td', {}, row.source));
  return made;
}

const nameTable = new Table(document.getElementById('names'), names, nameRow);
const directoryTable = new Table(document.getElementById('directories'), [...directories],
  directoryRow);
nameTable.sortBy('order', false);
directoryTable.sortBy('cost', true);

document.querySelector('.map').addEventListener('click', event => {
  const area = event.target.closest('a');
  if (!area) return;
  event.preventDefault();
  directoryTable.reveal(directories[Number(area.hash.slice(2))]);
});
