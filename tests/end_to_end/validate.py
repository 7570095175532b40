#!/usr/bin/env python3
"""validate.py SCHEMA FILE...: whether each JSON file fulfils the schema."""
import json
import sys

import jsonschema

with open(sys.argv[1]) as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
failed = False
for path in sys.argv[2:]:
    with open(path) as file:
        for error in validator.iter_errors(json.load(file)):
            print(f"{path}: {error.json_path}: {error.message[:200]}")
            for cause in error.context:
                print(f"  {cause.json_path}: {cause.message[:200]}")
            failed = True
sys.exit(failed)
