-- The material import as a database does it: the same checks, as constraints, while the lines are inserted; the
-- Material ID indexed; one transaction, flushed at its end. A journal in memory spares it a second file.
PRAGMA page_size = 8192;
PRAGMA journal_mode = MEMORY;
PRAGMA synchronous = FULL;
PRAGMA locking_mode = EXCLUSIVE;
PRAGMA cache_size = -200000;
PRAGMA foreign_keys = ON;

CREATE TABLE types (
  material_type TEXT COLLATE NOCASE, hap_limit REAL, application_method TEXT COLLATE NOCASE,
  coefficient REAL, exponent REAL, emission_limit REAL,
  UNIQUE (material_type, application_method));
.separator "|" "\n"
.import types.txt types

CREATE TABLE materials (
  custom_id TEXT NOT NULL,
  description TEXT CHECK (trim(description) <> ''),
  material_type TEXT COLLATE NOCASE,
  application_method TEXT COLLATE NOCASE,
  density NUMERIC CHECK (typeof(density) <> 'text'),
  hap_content NUMERIC CHECK (typeof(hap_content) <> 'text'),
  content1 NUMERIC CHECK (typeof(content1) <> 'text'), factor1 NUMERIC CHECK (typeof(factor1) <> 'text'),
  content2 NUMERIC CHECK (typeof(content2) <> 'text'), factor2 NUMERIC CHECK (typeof(factor2) <> 'text'),
  content3 NUMERIC CHECK (typeof(content3) <> 'text'), factor3 NUMERIC CHECK (typeof(factor3) <> 'text'),
  content4 NUMERIC CHECK (typeof(content4) <> 'text'), factor4 NUMERIC CHECK (typeof(factor4) <> 'text'),
  content5 NUMERIC CHECK (typeof(content5) <> 'text'), factor5 NUMERIC CHECK (typeof(factor5) <> 'text'),
  content6 NUMERIC CHECK (typeof(content6) <> 'text'), factor6 NUMERIC CHECK (typeof(factor6) <> 'text'),
  filler NUMERIC CHECK (typeof(filler) <> 'text'),
  FOREIGN KEY (material_type, application_method) REFERENCES types (material_type, application_method));
CREATE UNIQUE INDEX materials_by_id ON materials (trim(custom_id) COLLATE NOCASE);
.mode ascii
.separator "|" "\n"
.import materials.txt materials
