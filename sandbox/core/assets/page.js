// Asks for news once a second. When there are some, fetches the page again and takes over what
// changed, so that a film which plays goes on playing.
'use strict';

const interval = 1000;
let tag = null;

function byKey(parent) {
  return new Map([...parent.children].map((child) => [child.dataset.key, child]));
}

function syncAttributes(old, fresh) {
  for (const { name } of [...old.attributes]) {
    // Whether details are open is the reader's choice.
    if (name !== 'open' && !fresh.hasAttribute(name)) old.removeAttribute(name);
  }
  for (const { name, value } of [...fresh.attributes]) {
    if (old.getAttribute(name) !== value) old.setAttribute(name, value);
  }
}

function merge(old, fresh) {
  if (old.isEqualNode(fresh)) return;
  const keys = [...fresh.children].map((child) => child.dataset.key);
  if (old.tagName !== fresh.tagName || keys.every((key) => key === undefined)) {
    keepOpen(old, fresh);
    old.replaceWith(document.adoptNode(fresh));
    return;
  }
  syncAttributes(old, fresh);
  const kept = byKey(fresh);
  for (const child of [...old.children]) {
    const key = child.dataset.key;
    if (key !== undefined && !kept.has(key)) child.remove();
  }
  mergeChildren(old, fresh);
}

function mergeChildren(old, fresh) {
  const known = byKey(old);
  let place = old.firstElementChild;
  for (const child of [...fresh.children]) {
    const key = child.dataset.key;
    const same = key === undefined
      ? (place && place.dataset.key === undefined && place.tagName === child.tagName ? place : null)
      : known.get(key);
    if (!same) {
      old.insertBefore(document.adoptNode(child), place);
      continue;
    }
    // Moving an element would stop the film in it, so only what stands wrong is moved.
    if (same !== place) old.insertBefore(same, place);
    const next = same.nextElementSibling;
    merge(same, child);
    place = next;
  }
  while (place) {
    const next = place.nextElementSibling;
    place.remove();
    place = next;
  }
}

function keepOpen(old, fresh) {
  const details = [...fresh.querySelectorAll('details')];
  [...old.querySelectorAll('details')].forEach((one, index) => {
    if (one.open && details[index]) details[index].open = true;
  });
}

function showStatus(text) {
  const status = document.getElementById('status');
  status.textContent = text;
  status.hidden = text === '';
}

async function refresh() {
  const page = await fetch('/', { cache: 'no-store' });
  if (!page.ok) throw new Error('no page');
  const fresh = new DOMParser().parseFromString(await page.text(), 'text/html');
  merge(document.querySelector('main'), fresh.querySelector('main'));
  document.querySelector('.counts').textContent = fresh.querySelector('.counts').textContent;
}

async function ask() {
  try {
    const headers = tag ? { 'If-None-Match': tag } : {};
    const answer = await fetch('/arrivals.json', { cache: 'no-store', headers });
    if (answer.status === 200) {
      await refresh();
      tag = answer.headers.get('ETag');
    } else if (answer.status !== 304) {
      throw new Error('no news');
    }
    showStatus('');
  } catch {
    showStatus('The server does not answer. This page goes on asking.');
  }
  setTimeout(ask, interval);
}

ask();
