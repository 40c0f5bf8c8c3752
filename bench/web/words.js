// What the page knows about the actions by their names: where they stand, their icons, and what bare codes mean. An action
// that is new to it is shown all the same, in the last tab.

export const TABS = [
  ['Car', ['Parking', 'Driving', 'GPS']],
  ['Power', ['Power']],
  ['Media', ['SD card', 'Cameras', 'Sound', 'Own picture']],
  ['Faults', ['Faults', 'Notices']],
  ['Device', ['Clock', 'Touch panel', 'Start-up', 'Processes']],
];

// Where the document tells of a group.
export const DOCS = {
  Parking: 'the-parking-report', Driving: 'the-card', 'SD card': 'the-card', 'Own picture': 'the-drivers-own-picture-post-apipicture',
  Power: 'what-the-driver-sets', Clock: 'what-the-driver-sets', 'Start-up': 'what-the-driver-sets', GPS: 'event-post-apievent',
  Notices: 'event-post-apievent', Cameras: 'state-get-apistate', Sound: 'state-get-apistate', Faults: 'what-the-driver-sets',
  'Touch panel': 'touch-post-apitouch', Processes: 'action-post-apiaction', Time: 'time',
};

export const ICONS = {
  parkIn: 'mdi-parking', parkOut: 'mdi-car', impact: 'mdi-car-wash', shock: 'mdi-vibrate', motion: 'mdi-walk',
  parkLowVoltage: 'mdi-battery-alert', report: 'mdi-file-document-box', closeReport: 'mdi-close',
  battery: 'mdi-car-battery', countdown: 'mdi-timer-sand', batteryType: 'mdi-battery', voltageVerdict: 'mdi-gauge',
  underVoltage: 'mdi-battery-alert', normalVoltage: 'mdi-battery-70', overTemperature: 'mdi-thermometer-lines',
  normalTemperature: 'mdi-thermometer', accModel: 'mdi-power-socket',
  sdOut: 'mdi-eject', sdIn: 'mdi-sd', sdFull: 'mdi-file-multiple', sdFullStop: 'mdi-stop', sdCorrupt: 'mdi-content-cut', sdCheckFinds: 'mdi-magnify',
  sdFormatFails: 'mdi-alert-outline', sdError: 'mdi-sim-alert', sdWorn: 'mdi-sim-alert', sdFormatNeeded: 'mdi-wrench',
  rearPlug: 'mdi-video', rearUnplug: 'mdi-video-off', rearError: 'mdi-camera-off',
  gps: 'mdi-crosshairs-gps', speed: 'mdi-speedometer',
  hwError: 'mdi-alert-circle-outline', clockBroken: 'mdi-clock-alert', ledFailed: 'mdi-led-off', commandsFail: 'mdi-close-octagon-outline',
  mute: 'mdi-volume-off', blackspot: 'mdi-map-marker', voiceEndNow: 'mdi-stop', voiceEndSuppress: 'mdi-volume-high',
  notice: 'mdi-bell-outline', event: 'mdi-message-alert', clock: 'mdi-calendar-clock', timeSpeed: 'mdi-fast-forward', timeSkip: 'mdi-skip-next',
  factoryReset: 'mdi-factory', updateMarker: 'mdi-download', update: 'mdi-upload', touchMarker: 'mdi-target', removeMarkers: 'mdi-delete',
  panelAskew: 'mdi-rotate-left', panelStraight: 'mdi-check', interfaceRestart: 'mdi-reload', interfaceKill: 'mdi-close-octagon-outline',
  recorderRestart: 'mdi-reload', recorderStop: 'mdi-stop', recorderStart: 'mdi-play',
};

const CARD_FAULTS = {0: 'good', 1: 'faulty', 5: 'files deleted by someone', 7: 'another unit of storage'};
const CARD_ERRORS = {...CARD_FAULTS, 0: 'wants a format'};
const HARDWARE = {
  0: 'rear camera', 1: 'front camera', 2: 'rear camera', 3: 'acceleration sensor', 4: 'firmware', 5: 'without words', 6: 'time',
  7: 'without words', 8: 'SD card', 9: 'front camera, restarts', 10: 'power circuit', 11: 'product', 12: 'card not written, restarts',
  13: 'without words', 14: 'card not written, restarts', 15: 'power circuit, restarts', 16: 'cable of the rear camera', 17: 'without words',
  18: 'SD card, no code',
};
const NOTICES = {1: 'restart', 2: 'rear camera needed', 3: 'LCD off', 4: 'exit'};

// Action and argument → code → words.
export const CODES = {
  'sdCheckFinds fault': CARD_FAULTS, 'sdError code': CARD_ERRORS, 'hwError code': HARDWARE, 'notice number': NOTICES,
};

// What stands behind a field, in place of its name.
export const UNITS = {
  minutesAgo: 'min ago', kmh: 'km/h', volts: 'V', recordings: 'recordings', 'commandsFail number': 'commands', 'sdFormatFails number': 'formats',
};

// These are numbers that one turns rather than types.
export const SLIDERS = ['speed', 'battery'];

// "minutesAgo" as a person writes it.
export function wordsOf(name) {
  return name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);
}
